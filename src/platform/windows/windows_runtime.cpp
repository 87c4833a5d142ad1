#include "platform/windows/windows_runtime.h"

namespace zt::telemetry::collector::performancesamples::platform {

WindowsRuntime::WindowsRuntime()
    : library_(base::LoadedLibrary::OfSystem("combase.dll")), functions_(Functions::In(library_)) {}

HRESULT WindowsRuntime::FindStatics(std::wstring_view class_name, const IID& id, void** statics) const {
  HSTRING_HEADER header{};
  HSTRING name = nullptr;
  const HRESULT named = functions_.Get<"WindowsCreateStringReference">()(
      class_name.data(), static_cast<UINT32>(class_name.size()), &header, &name);
  if (FAILED(named)) return named;
  const HRESULT found = functions_.Get<"RoGetActivationFactory">()(name, id, statics);
  return found == REGDB_E_CLASSNOTREG || found == E_NOINTERFACE ? S_OK : found;
}

}  // namespace zt::telemetry::collector::performancesamples::platform
