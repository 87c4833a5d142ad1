#pragma once

#include <zt/com/wmi_connection.h>

#include <chrono>

#include "base/time_budget.h"
#include "firmware_command.h"

namespace zt::shared::ztbios {

/// The way to the firmware: one connection for all commands, made by the first of them.
class FirmwareInterface {
 public:
  /// `patience`: how long all commands may take together.
  explicit FirmwareInterface(com::WmiConnection::Connect connect = com::ConnectToNamespace,
                             std::chrono::milliseconds patience = kAllCommandsLimit);

  /// As `RunFirmwareCommand`; a failure to connect is the status of every command, and `base::kTimedOut` that of each
  /// one when the patience is at its end.
  HRESULT Run(const FirmwareCommand& command, FirmwareReply& reply);

 private:
  com::WmiConnection connection_;
  base::TimeBudget patience_;
};

}  // namespace zt::shared::ztbios
