#include <windows.h>

namespace {

// protobuf keeps what a library registered about its messages for as long as it is loaded itself, and refuses the same
// messages a second time: a library that went and came back in a process that uses protobuf elsewhere would end it. So
// this one stays once it is loaded, also when the plugin that brought it is unloaded.
bool StayLoaded() {
  static const char address = 0;
  HMODULE module = nullptr;
  return ::GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                              reinterpret_cast<const wchar_t*>(&address), &module) != FALSE;
}

[[maybe_unused]] const bool stays_loaded = StayLoaded();

}  // namespace
