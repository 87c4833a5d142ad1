#include "firmware_interface.h"

#include <utility>

namespace zt::shared::ztbios {
namespace {

constexpr wchar_t kNamespace[] = LR"(\\.\root\wmi)";

}  // namespace

FirmwareInterface::FirmwareInterface(com::WmiConnection::Connect connect)
    : connection_(kNamespace, std::move(connect)) {}

HRESULT FirmwareInterface::Run(const FirmwareCommand& command, FirmwareReply& reply) {
  const HRESULT status = connection_.Ensure();
  return FAILED(status) ? status : RunFirmwareCommand(connection_.Services(), command, reply);
}

}  // namespace zt::shared::ztbios
