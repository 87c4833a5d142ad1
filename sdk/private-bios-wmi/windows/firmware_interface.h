#pragma once

#include <zt/com/wmi_connection.h>

#include "firmware_command.h"

namespace zt::shared::ztbios {

/// The way to the firmware: one connection for all commands, made by the first of them.
class FirmwareInterface {
 public:
  explicit FirmwareInterface(com::WmiConnection::Connect connect = com::ConnectToNamespace);

  /// As `RunFirmwareCommand`; a failure to connect is the status of every command.
  HRESULT Run(const FirmwareCommand& command, FirmwareReply& reply);

 private:
  com::WmiConnection connection_;
};

}  // namespace zt::shared::ztbios
