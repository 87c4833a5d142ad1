#pragma once

#include <wbemidl.h>

#include <string>
#include <vector>

#include "fake_enumerator.h"

namespace zt::tests {

/// A call's result that comes later, or never.
class FakeCallResult : public FakeUnknown<IWbemCallResult> {
 public:
  com::ComPtr<FakeClassObject> object;
  HRESULT status = WBEM_S_NO_ERROR;
  LONG timeout_ms = 0;

  HRESULT STDMETHODCALLTYPE GetResultObject(LONG timeout, IWbemClassObject** result) override {
    timeout_ms = timeout;
    if (status == WBEM_S_NO_ERROR && object != nullptr) HandOut(object, result);
    return status;
  }
  HRESULT STDMETHODCALLTYPE GetResultString(LONG, BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetResultServices(LONG, IWbemServices**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetCallStatus(LONG, LONG*) override { return E_NOTIMPL; }
};

/// A namespace with one class, its instances and its method. What it does not do answers E_NOTIMPL.
class FakeServices : public FakeUnknown<IWbemServices> {
 public:
  com::ComPtr<FakeEnumerator> instances = MakeFake<FakeEnumerator>();
  HRESULT enumeration_status = WBEM_S_NO_ERROR;
  com::ComPtr<FakeClassObject> class_object = MakeFake<FakeClassObject>();
  HRESULT class_status = WBEM_S_NO_ERROR;
  com::ComPtr<FakeClassObject> method_result = MakeFake<FakeClassObject>();
  HRESULT method_status = WBEM_S_NO_ERROR;
  /// Where set, it stands for the answer in place of an object at once.
  com::ComPtr<FakeCallResult> pending_method;

  /// The answers to each query, one enumerator after the other.
  std::vector<com::ComPtr<FakeEnumerator>> query_results;

  std::vector<std::wstring> queries;
  std::wstring asked_class, asked_instances, called_path, called_method;
  com::ComPtr<IWbemClassObject> given_parameters;

  HRESULT STDMETHODCALLTYPE GetObject(const BSTR path, LONG, IWbemContext*, IWbemClassObject** object,
                                      IWbemCallResult**) override {
    asked_class = path;
    if (SUCCEEDED(class_status)) HandOut(class_object, object);
    return class_status;
  }
  HRESULT STDMETHODCALLTYPE CreateInstanceEnum(const BSTR class_name, LONG, IWbemContext*,
                                               IEnumWbemClassObject** enumerator) override {
    asked_instances = class_name;
    if (SUCCEEDED(enumeration_status)) HandOut(instances, enumerator);
    return enumeration_status;
  }
  HRESULT STDMETHODCALLTYPE ExecMethod(const BSTR path, const BSTR method, LONG, IWbemContext*,
                                       IWbemClassObject* parameters, IWbemClassObject** result,
                                       IWbemCallResult** pending) override {
    called_path = path;
    called_method = method;
    given_parameters = parameters;
    if (FAILED(method_status)) return method_status;
    if (pending_method != nullptr) {
      HandOut(pending_method, pending);
    } else {
      HandOut(method_result, result);
    }
    return method_status;
  }

  HRESULT STDMETHODCALLTYPE OpenNamespace(const BSTR, LONG, IWbemContext*, IWbemServices**,
                                          IWbemCallResult**) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE CancelAsyncCall(IWbemObjectSink*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE QueryObjectSink(LONG, IWbemObjectSink**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetObjectAsync(const BSTR, LONG, IWbemContext*, IWbemObjectSink*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE PutClass(IWbemClassObject*, LONG, IWbemContext*, IWbemCallResult**) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE PutClassAsync(IWbemClassObject*, LONG, IWbemContext*, IWbemObjectSink*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE DeleteClass(const BSTR, LONG, IWbemContext*, IWbemCallResult**) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE DeleteClassAsync(const BSTR, LONG, IWbemContext*, IWbemObjectSink*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE CreateClassEnum(const BSTR, LONG, IWbemContext*, IEnumWbemClassObject**) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE CreateClassEnumAsync(const BSTR, LONG, IWbemContext*, IWbemObjectSink*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE PutInstance(IWbemClassObject*, LONG, IWbemContext*, IWbemCallResult**) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE PutInstanceAsync(IWbemClassObject*, LONG, IWbemContext*, IWbemObjectSink*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE DeleteInstance(const BSTR, LONG, IWbemContext*, IWbemCallResult**) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE DeleteInstanceAsync(const BSTR, LONG, IWbemContext*, IWbemObjectSink*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE CreateInstanceEnumAsync(const BSTR, LONG, IWbemContext*, IWbemObjectSink*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE ExecQuery(const BSTR, const BSTR query, LONG, IWbemContext*,
                                      IEnumWbemClassObject** enumerator) override {
    queries.emplace_back(query);
    if (queries.size() > query_results.size()) return E_NOTIMPL;
    HandOut(query_results[queries.size() - 1], enumerator);
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE ExecQueryAsync(const BSTR, const BSTR, LONG, IWbemContext*, IWbemObjectSink*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE ExecNotificationQuery(const BSTR, const BSTR, LONG, IWbemContext*,
                                                  IEnumWbemClassObject**) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE ExecNotificationQueryAsync(const BSTR, const BSTR, LONG, IWbemContext*,
                                                       IWbemObjectSink*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE ExecMethodAsync(const BSTR, const BSTR, LONG, IWbemContext*, IWbemClassObject*,
                                            IWbemObjectSink*) override {
    return E_NOTIMPL;
  }
};

}  // namespace zt::tests
