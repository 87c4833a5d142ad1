#pragma once

#include <windows.h>
#include <wlanapi.h>

#include "platform/library.h"

namespace zt::telemetry::collector::performancesamples::platform {

/// The functions of the WLAN service's library.
struct WlanFunctions {
  decltype(&::WlanOpenHandle) open_handle = nullptr;
  decltype(&::WlanCloseHandle) close_handle = nullptr;
  decltype(&::WlanEnumInterfaces) enum_interfaces = nullptr;
  decltype(&::WlanQueryInterface) query_interface = nullptr;
  decltype(&::WlanGetProfileList) get_profile_list = nullptr;
  decltype(&::WlanGetProfile) get_profile = nullptr;
  decltype(&::WlanFreeMemory) free_memory = nullptr;

  bool AreAllThere() const;
};

/// The library, looked up when it is used: a server need not have it, and the module loads there too.
class WlanLibrary {
 public:
  WlanLibrary();

  /// None of them where the system has no such library. For as long as this object lives.
  const WlanFunctions& Functions() const { return functions_; }

 private:
  Library library_;
  WlanFunctions functions_;
};

}  // namespace zt::telemetry::collector::performancesamples::platform
