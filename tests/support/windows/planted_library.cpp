#include <windows.h>

#include <array>
#include <string>

// A library that has no business in the process that loads it: its entry point leaves a mark beside its file.
BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, void* /*reserved*/) {
  if (reason != DLL_PROCESS_ATTACH) return TRUE;
  std::array<wchar_t, MAX_PATH> path{};
  ::GetModuleFileNameW(module, path.data(), MAX_PATH);
  const HANDLE mark = ::CreateFileW((std::wstring(path.data()) + L".loaded").c_str(), GENERIC_WRITE, 0, nullptr,
                                    CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (mark != INVALID_HANDLE_VALUE) ::CloseHandle(mark);
  return TRUE;
}
