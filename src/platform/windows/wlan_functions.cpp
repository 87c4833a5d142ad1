#include "platform/windows/wlan_functions.h"

namespace zt::telemetry::collector::performancesamples::platform {
namespace {

constexpr wchar_t kLibrary[] = L"wlanapi.dll";

}  // namespace

bool WlanFunctions::AreAllThere() const {
  return open_handle != nullptr && close_handle != nullptr && enum_interfaces != nullptr &&
         query_interface != nullptr && get_profile_list != nullptr && get_profile != nullptr && free_memory != nullptr;
}

WlanLibrary::WlanLibrary()
    : library_(Library::Search(kLibrary, LOAD_LIBRARY_SEARCH_SYSTEM32)),
      functions_{
          library_.Find<decltype(::WlanOpenHandle)>("WlanOpenHandle"),
          library_.Find<decltype(::WlanCloseHandle)>("WlanCloseHandle"),
          library_.Find<decltype(::WlanEnumInterfaces)>("WlanEnumInterfaces"),
          library_.Find<decltype(::WlanQueryInterface)>("WlanQueryInterface"),
          library_.Find<decltype(::WlanGetProfileList)>("WlanGetProfileList"),
          library_.Find<decltype(::WlanGetProfile)>("WlanGetProfile"),
          library_.Find<decltype(::WlanFreeMemory)>("WlanFreeMemory"),
      } {}

}  // namespace zt::telemetry::collector::performancesamples::platform
