#pragma once

#include <windows.h>
#include <zt/com/com_handles.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <set>
#include <utility>
#include <vector>

#include "windows/dxcore.h"

namespace zt::tests {

// The interfaces of COM have no virtual destructor.
#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#endif

/// How many objects of a fake DXCore are alive.
inline int& LiveDxcoreObjects() {
  static int count = 0;
  return count;
}

/// An object of a DXCore that stands in where no machine here has NPUs. For one thread.
template <typename Interface>
class FakeDxcoreObject : public Interface {
 public:
  FakeDxcoreObject() { ++LiveDxcoreObjects(); }
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID /*iid*/, void** object) override {
    *object = nullptr;
    return E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

 protected:
  virtual ~FakeDxcoreObject() { --LiveDxcoreObjects(); }

 private:
  ULONG references_ = 1;
};

#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

/// Hands out a reference of the caller's own if it asks for the interface by its identifier.
template <typename Object>
HRESULT Give(Object* object, const GUID& id, REFIID asked, void** out) {
  *out = nullptr;
  if (asked != id) return E_NOINTERFACE;
  object->AddRef();
  *out = object;
  return S_OK;
}

class FakeAdapter : public FakeDxcoreObject<shared::npu::dxcore::IAdapter> {
 public:
  using Property = shared::npu::dxcore::Property;

  template <typename T>
  FakeAdapter& Set(Property property, const T& value) {
    std::vector<unsigned char> bytes(sizeof(value));
    std::memcpy(bytes.data(), &value, sizeof(value));
    properties_[property] = std::move(bytes);
    return *this;
  }
  FakeAdapter& Has(const GUID& attribute) {
    attributes_.push_back(attribute);
    return *this;
  }
  FakeAdapter& Lacks(Property property) {
    properties_.erase(property);
    return *this;
  }
  /// The property is supported, and reading it fails.
  FakeAdapter& Fails(Property property) {
    failing_.insert(property);
    return *this;
  }

  bool STDMETHODCALLTYPE IsValid() override { return true; }
  bool STDMETHODCALLTYPE IsAttributeSupported(REFGUID attribute) override {
    return std::find(attributes_.begin(), attributes_.end(), attribute) != attributes_.end();
  }
  bool STDMETHODCALLTYPE IsPropertySupported(Property property) override { return properties_.contains(property); }
  HRESULT STDMETHODCALLTYPE GetProperty(Property property, std::size_t size, void* data) override {
    const auto found = properties_.find(property);
    if (found == properties_.end() || found->second.size() != size) return E_INVALIDARG;
    std::memcpy(data, found->second.data(), size);
    return failing_.contains(property) ? E_FAIL : S_OK;
  }

 private:
  std::vector<GUID> attributes_;
  std::map<Property, std::vector<unsigned char>> properties_;
  std::set<Property> failing_;
};

/// A null adapter is one that went away since it was listed.
using FakeAdapters = std::vector<com::ComPtr<FakeAdapter>>;

class FakeAdapterList : public FakeDxcoreObject<shared::npu::dxcore::IAdapterList> {
 public:
  explicit FakeAdapterList(FakeAdapters adapters) : adapters_(std::move(adapters)) {}

  HRESULT STDMETHODCALLTYPE GetAdapter(std::uint32_t index, REFIID iid, void** adapter) override {
    if (index >= adapters_.size()) return E_INVALIDARG;
    if (!adapters_[index]) return E_FAIL;
    return Give(adapters_[index].Get(), shared::npu::dxcore::kAdapterId, iid, adapter);
  }
  std::uint32_t STDMETHODCALLTYPE GetAdapterCount() override { return static_cast<std::uint32_t>(adapters_.size()); }

 private:
  FakeAdapters adapters_;
};

class FakeAdapterFactory : public FakeDxcoreObject<shared::npu::dxcore::IAdapterFactory> {
 public:
  HRESULT STDMETHODCALLTYPE CreateAdapterList(std::uint32_t count, const GUID* attributes, REFIID iid,
                                              void** list) override {
    *list = nullptr;
    if (*attributes == failing_attribute) return E_OUTOFMEMORY;
    if (count != 1 ||
        std::find(unknown_attributes.begin(), unknown_attributes.end(), *attributes) != unknown_attributes.end()) {
      return E_INVALIDARG;
    }
    FakeAdapters listed;
    std::copy_if(adapters.begin(), adapters.end(), std::back_inserter(listed),
                 [&](const auto& adapter) { return !adapter || adapter->IsAttributeSupported(*attributes); });
    com::ComPtr<FakeAdapterList> owner;
    com::TakeOver(owner, new FakeAdapterList(std::move(listed)));
    return Give(owner.Get(), shared::npu::dxcore::kAdapterListId, iid, list);
  }

  FakeAdapters adapters;
  /// Those that this version of Windows does not know.
  std::vector<GUID> unknown_attributes;
  /// The adapters that have this one cannot be listed.
  GUID failing_attribute{};
};

}  // namespace zt::tests
