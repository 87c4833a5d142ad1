#include "samplers/wmi_query.h"

#include <typeinfo>

#include "zt/telemetry/common/error.h"

namespace zt::telemetry::collector::performancesamples {

std::int32_t RunQuery(shared::wmi::WMIClient* client, const std::wstring& wql) {
  return client != nullptr ? client->ExecQuery(wql) : kNoClient;
}

void RequireSuccess(std::int32_t status, const std::string& description) {
  if (status == shared::wmi::kSuccess) return;
  throw common::Error(common::Error::kCallFailed, status, description, typeid(shared::wmi::WMIClient).name(), "");
}

}  // namespace zt::telemetry::collector::performancesamples
