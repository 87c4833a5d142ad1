#include "platform/windows/wlan_functions.h"

namespace zt::telemetry::collector::performancesamples::platform {

WlanLibrary::WlanLibrary()
    : library_(base::LoadedLibrary::OfSystem("wlanapi.dll")), functions_(WlanFunctions::In(library_)) {}

}  // namespace zt::telemetry::collector::performancesamples::platform
