#pragma once

#include <windows.h>
#include <zt/com/com_handles.h>

#include <atomic>
#include <utility>

namespace zt::tests {

// The interfaces of COM have no virtual destructor.
#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#endif

/// A COM object of this process with one interface, for standing in where no machine here has the real one.
template <typename Interface>
class FakeUnknown : public Interface {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    const bool known = iid == __uuidof(IUnknown) || iid == __uuidof(Interface);
    *object = known ? static_cast<Interface*>(this) : nullptr;
    if (!known) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

 protected:
  virtual ~FakeUnknown() = default;

 private:
  std::atomic<ULONG> references_ = 1;
};

#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

/// A new fake, owned.
template <typename Fake, typename... Arguments>
com::ComPtr<Fake> MakeFake(Arguments&&... arguments) {
  com::ComPtr<Fake> fake;
  com::TakeOver(fake, new Fake(std::forward<Arguments>(arguments)...));
  return fake;
}

/// Hands `object` to a caller's out pointer, with a reference of its own.
template <typename Fake, typename Interface>
void HandOut(const com::ComPtr<Fake>& object, Interface** out) {
  com::ComPtr<Fake> copy = object;
  *out = copy.Detach();
}

}  // namespace zt::tests
