#include "firmware_interface.h"

#include <algorithm>
#include <utility>

#include "base/time_limit.h"

namespace zt::shared::ztbios {
namespace {

constexpr wchar_t kNamespace[] = LR"(\\.\root\wmi)";

}  // namespace

FirmwareInterface::FirmwareInterface(com::WmiConnection::Connect connect, std::chrono::milliseconds patience)
    : connection_(kNamespace, std::move(connect)), patience_(patience) {}

HRESULT FirmwareInterface::Run(const FirmwareCommand& command, FirmwareReply& reply) {
  const HRESULT status = connection_.Ensure();
  if (FAILED(status)) return status;
  if (patience_.IsSpent()) return base::kTimedOut;
  const base::TimeBudget::Spending spending(patience_);
  return RunFirmwareCommand(connection_.Services(), command, reply, std::min(kCommandLimit, patience_.Left()));
}

}  // namespace zt::shared::ztbios
