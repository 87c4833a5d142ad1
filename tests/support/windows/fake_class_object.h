#pragma once

#include <wbemidl.h>

#include <map>
#include <memory>
#include <string>

#include "fake_unknown.h"

namespace zt::tests {

/// A WMI object with properties. What it does not do answers E_NOTIMPL.
class FakeClassObject : public FakeUnknown<IWbemClassObject> {
 public:
  using Properties = std::map<std::wstring, std::unique_ptr<com::Variant>>;

  /// The property's value, made where there is none.
  VARIANT* Property(const std::wstring& name) {
    std::unique_ptr<com::Variant>& value = properties_[name];
    if (value == nullptr) value = std::make_unique<com::Variant>();
    return value->Receive();
  }
  void SetNumber(const std::wstring& name, LONG number) {
    VARIANT* value = Property(name);
    value->vt = VT_I4;
    value->lVal = number;
  }
  void SetText(const std::wstring& name, const std::wstring& text) {
    VARIANT* value = Property(name);
    value->vt = VT_BSTR;
    value->bstrVal = ::SysAllocString(text.c_str());
  }
  void Remove(const std::wstring& name) { properties_.erase(name); }
  const Properties& All() const { return properties_; }

  /// What its one method takes.
  com::ComPtr<FakeClassObject> method_parameters;
  HRESULT method_status = S_OK;
  HRESULT spawn_status = S_OK;
  HRESULT put_status = S_OK;
  /// The object that the last SpawnInstance made.
  com::ComPtr<FakeClassObject> spawned;

  HRESULT STDMETHODCALLTYPE Get(LPCWSTR name, LONG, VARIANT* value, CIMTYPE*, LONG*) override {
    const auto found = properties_.find(name);
    if (found == properties_.end()) return static_cast<HRESULT>(WBEM_E_NOT_FOUND);
    return ::VariantCopy(value, &found->second->Get());
  }
  HRESULT STDMETHODCALLTYPE Put(LPCWSTR name, LONG, VARIANT* value, CIMTYPE) override {
    return FAILED(put_status) ? put_status : ::VariantCopy(Property(name), value);
  }
  HRESULT STDMETHODCALLTYPE SpawnInstance(LONG, IWbemClassObject** instance) override {
    if (FAILED(spawn_status)) return spawn_status;
    spawned = MakeFake<FakeClassObject>();
    spawned->put_status = put_status;
    HandOut(spawned, instance);
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetMethod(LPCWSTR name, LONG, IWbemClassObject** in, IWbemClassObject**) override {
    asked_method = name;
    if (FAILED(method_status)) return method_status;
    HandOut(method_parameters, in);
    return S_OK;
  }
  std::wstring asked_method;

  HRESULT STDMETHODCALLTYPE GetQualifierSet(IWbemQualifierSet**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Delete(LPCWSTR) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetNames(LPCWSTR, LONG, VARIANT*, SAFEARRAY**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE BeginEnumeration(LONG) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Next(LONG, BSTR*, VARIANT*, CIMTYPE*, LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE EndEnumeration() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetPropertyQualifierSet(LPCWSTR, IWbemQualifierSet**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Clone(IWbemClassObject**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetObjectText(LONG, BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SpawnDerivedClass(LONG, IWbemClassObject**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE CompareTo(LONG, IWbemClassObject*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetPropertyOrigin(LPCWSTR, BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE InheritsFrom(LPCWSTR) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE PutMethod(LPCWSTR, LONG, IWbemClassObject*, IWbemClassObject*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE DeleteMethod(LPCWSTR) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE BeginMethodEnumeration(LONG) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE NextMethod(LONG, BSTR*, IWbemClassObject**, IWbemClassObject**) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE EndMethodEnumeration() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetMethodQualifierSet(LPCWSTR, IWbemQualifierSet**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetMethodOrigin(LPCWSTR, BSTR*) override { return E_NOTIMPL; }

 private:
  Properties properties_;
};

}  // namespace zt::tests
