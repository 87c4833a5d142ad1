#pragma once

#include <windows.h>
#include <roapi.h>
#include <winstring.h>
#include <wrl/client.h>

#include <memory>
#include <string_view>

namespace zt::telemetry::collector::performancesamples::platform {

/// The Windows Runtime, looked up when it is used: a Windows without it has no sensors, and the module loads there too.
class WindowsRuntime {
 public:
  WindowsRuntime();

  /// False where the system has no Windows Runtime; nothing else is called then.
  bool IsThere() const;

  /// Initialises the calling thread, multithreaded. Every success is to be followed by one `Uninitialize`.
  HRESULT Initialize() const { return initialize_(RO_INIT_MULTITHREADED); }
  void Uninitialize() const { uninitialize_(); }

  /// The statics of a class by its name, as the interface `id`. `class_name` ends with a zero. Null with S_OK where the
  /// system has no such class, or an older one without the interface.
  template <typename Interface>
  HRESULT FindStatics(std::wstring_view class_name, const IID& id, Microsoft::WRL::ComPtr<Interface>& statics) const {
    return FindStatics(class_name, id, reinterpret_cast<void**>(statics.ReleaseAndGetAddressOf()));
  }

 private:
  struct LibraryReleaser {
    using pointer = HMODULE;
    void operator()(HMODULE library) const { ::FreeLibrary(library); }
  };

  HRESULT FindStatics(std::wstring_view class_name, const IID& id, void** statics) const;
  template <typename Function>
  void LookUp(const char* name, Function& function) const;

  std::unique_ptr<void, LibraryReleaser> library_;
  decltype(&::RoInitialize) initialize_ = nullptr;
  decltype(&::RoUninitialize) uninitialize_ = nullptr;
  decltype(&::RoGetActivationFactory) get_activation_factory_ = nullptr;
  decltype(&::WindowsCreateStringReference) create_string_reference_ = nullptr;
};

/// The Windows Runtime on the calling thread for as long as this object lives; left as found. Goes on the thread that
/// made it, after everything that was used under it.
class RuntimeApartment {
 public:
  explicit RuntimeApartment(const WindowsRuntime& runtime) : runtime_(runtime), status_(runtime.Initialize()) {}
  ~RuntimeApartment() {
    // Every success counts, also the one that says "initialised before"; a refusal does not.
    if (SUCCEEDED(status_)) runtime_.Uninitialize();
  }
  RuntimeApartment(const RuntimeApartment&) = delete;
  RuntimeApartment& operator=(const RuntimeApartment&) = delete;

  HRESULT Status() const { return status_; }

 private:
  const WindowsRuntime& runtime_;
  HRESULT status_;
};

}  // namespace zt::telemetry::collector::performancesamples::platform
