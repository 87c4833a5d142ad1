#pragma once

#include <windows.h>
#include <roapi.h>
#include <winstring.h>
#include <wrl/client.h>

#include <string_view>

#include "base/function_table.h"
#include "base/loaded_library.h"
#include "base/windows/com_apartment.h"

namespace zt::telemetry::collector::performancesamples::platform {

/// The Windows Runtime, looked up when it is used: a Windows without it has no sensors, and the module loads there too.
class WindowsRuntime {
 public:
  WindowsRuntime();

  /// False where the system has no Windows Runtime; nothing else is called then.
  bool IsThere() const { return functions_.IsComplete(); }

  /// Initialises the calling thread, multithreaded, for as long as what is returned lives; not longer than this object.
  base::ComApartment Enter() const {
    return {functions_.Get<"RoInitialize">()(RO_INIT_MULTITHREADED), functions_.Get<"RoUninitialize">()};
  }

  /// The statics of a class by its name, as the interface `id`. `class_name` ends with a zero. Null with S_OK where the
  /// system has no such class, or an older one without the interface.
  template <typename Interface>
  HRESULT FindStatics(std::wstring_view class_name, const IID& id, Microsoft::WRL::ComPtr<Interface>& statics) const {
    return FindStatics(class_name, id, reinterpret_cast<void**>(statics.ReleaseAndGetAddressOf()));
  }

 private:
  using Functions =
      base::FunctionTable<base::Required<"RoInitialize", decltype(::RoInitialize)>,
                          base::Required<"RoUninitialize", decltype(::RoUninitialize)>,
                          base::Required<"RoGetActivationFactory", decltype(::RoGetActivationFactory)>,
                          base::Required<"WindowsCreateStringReference", decltype(::WindowsCreateStringReference)>>;

  HRESULT FindStatics(std::wstring_view class_name, const IID& id, void** statics) const;

  base::LoadedLibrary library_;
  Functions functions_;
};

}  // namespace zt::telemetry::collector::performancesamples::platform
