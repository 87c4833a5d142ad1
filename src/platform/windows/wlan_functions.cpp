#include "platform/windows/wlan_functions.h"

namespace zt::telemetry::collector::performancesamples::platform {
namespace {

constexpr wchar_t kLibrary[] = L"wlanapi.dll";

}  // namespace

bool WlanFunctions::AreAllThere() const {
  return open_handle != nullptr && close_handle != nullptr && enum_interfaces != nullptr &&
         query_interface != nullptr && get_profile_list != nullptr && get_profile != nullptr && free_memory != nullptr;
}

WlanLibrary::WlanLibrary() : library_(::LoadLibraryExW(kLibrary, nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32)) {
  if (library_ == nullptr) return;
  LookUp("WlanOpenHandle", functions_.open_handle);
  LookUp("WlanCloseHandle", functions_.close_handle);
  LookUp("WlanEnumInterfaces", functions_.enum_interfaces);
  LookUp("WlanQueryInterface", functions_.query_interface);
  LookUp("WlanGetProfileList", functions_.get_profile_list);
  LookUp("WlanGetProfile", functions_.get_profile);
  LookUp("WlanFreeMemory", functions_.free_memory);
}

template <typename Function>
void WlanLibrary::LookUp(const char* name, Function& function) const {
  function = reinterpret_cast<Function>(reinterpret_cast<void*>(::GetProcAddress(library_.get(), name)));
}

}  // namespace zt::telemetry::collector::performancesamples::platform
