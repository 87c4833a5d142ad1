#pragma once

#include <windows.h>
#include <wlanapi.h>

#include "base/function_table.h"
#include "base/loaded_library.h"

namespace zt::telemetry::collector::performancesamples::platform {

/// The functions of the WLAN service's library.
using WlanFunctions = base::FunctionTable<base::Required<"WlanOpenHandle", decltype(::WlanOpenHandle)>,
                                          base::Required<"WlanCloseHandle", decltype(::WlanCloseHandle)>,
                                          base::Required<"WlanEnumInterfaces", decltype(::WlanEnumInterfaces)>,
                                          base::Required<"WlanQueryInterface", decltype(::WlanQueryInterface)>,
                                          base::Required<"WlanGetProfileList", decltype(::WlanGetProfileList)>,
                                          base::Required<"WlanGetProfile", decltype(::WlanGetProfile)>,
                                          base::Required<"WlanFreeMemory", decltype(::WlanFreeMemory)>>;

/// The library, looked up when it is used: a server need not have it, and the module loads there too.
class WlanLibrary {
 public:
  WlanLibrary();

  /// None of them where the system has no such library. For as long as this object lives.
  const WlanFunctions& Functions() const { return functions_; }

 private:
  base::LoadedLibrary library_;
  WlanFunctions functions_;
};

}  // namespace zt::telemetry::collector::performancesamples::platform
