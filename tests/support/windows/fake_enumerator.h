#pragma once

#include <wbemidl.h>

#include <cstddef>
#include <functional>
#include <vector>

#include "fake_class_object.h"

namespace zt::tests {

/// An enumerator whose calls of Next answer what a test says, one after the other; then the end.
class FakeEnumerator : public FakeUnknown<IEnumWbemClassObject> {
 public:
  struct Answer {
    HRESULT status = WBEM_S_NO_ERROR;
    std::vector<com::ComPtr<FakeClassObject>> objects;
    std::function<void()> before = [] {};
  };
  struct Call {
    LONG timeout_ms = 0;
    ULONG wanted = 0;
  };

  std::vector<Answer> answers;
  std::vector<Call> calls;

  HRESULT STDMETHODCALLTYPE Next(LONG timeout_ms, ULONG wanted, IWbemClassObject** objects, ULONG* returned) override {
    *returned = 0;
    const std::size_t number = calls.size();
    calls.push_back({timeout_ms, wanted});
    if (number >= answers.size()) return WBEM_S_FALSE;
    answers[number].before();
    for (const auto& object : answers[number].objects) HandOut(object, &objects[(*returned)++]);
    return answers[number].status;
  }

  HRESULT STDMETHODCALLTYPE Reset() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE NextAsync(ULONG, IWbemObjectSink*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Clone(IEnumWbemClassObject**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Skip(LONG, ULONG) override { return E_NOTIMPL; }
};

}  // namespace zt::tests
