#include "samplers/wmi_query.h"

#include <typeinfo>

#include "zt/shared/wmi/wmi_client.h"
#include "zt/telemetry/common/error.h"

namespace zt::telemetry::collector::performancesamples {

void RequireSuccess(std::int32_t status, const std::string& description) {
  if (status == shared::wmi::kSuccess) return;
  throw common::Error(common::Error::kCallFailed, status, description, typeid(shared::wmi::WMIClient).name(), "");
}

}  // namespace zt::telemetry::collector::performancesamples
