#include "platform/windows/windows_runtime.h"

namespace zt::telemetry::collector::performancesamples::platform {
namespace {

constexpr wchar_t kLibrary[] = L"combase.dll";

}  // namespace

WindowsRuntime::WindowsRuntime() : library_(::LoadLibraryExW(kLibrary, nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32)) {
  if (library_ == nullptr) return;
  LookUp("RoInitialize", initialize_);
  LookUp("RoUninitialize", uninitialize_);
  LookUp("RoGetActivationFactory", get_activation_factory_);
  LookUp("WindowsCreateStringReference", create_string_reference_);
}

template <typename Function>
void WindowsRuntime::LookUp(const char* name, Function& function) const {
  function = reinterpret_cast<Function>(reinterpret_cast<void*>(::GetProcAddress(library_.get(), name)));
}

bool WindowsRuntime::IsThere() const {
  return initialize_ != nullptr && uninitialize_ != nullptr && get_activation_factory_ != nullptr &&
         create_string_reference_ != nullptr;
}

HRESULT WindowsRuntime::FindStatics(std::wstring_view class_name, const IID& id, void** statics) const {
  HSTRING_HEADER header{};
  HSTRING name = nullptr;
  const HRESULT named =
      create_string_reference_(class_name.data(), static_cast<UINT32>(class_name.size()), &header, &name);
  if (FAILED(named)) return named;
  const HRESULT found = get_activation_factory_(name, id, statics);
  return found == REGDB_E_CLASSNOTREG || found == E_NOINTERFACE ? S_OK : found;
}

}  // namespace zt::telemetry::collector::performancesamples::platform
