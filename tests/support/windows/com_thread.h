#pragma once

#include <objbase.h>
#include <windows.h>

#include <optional>
#include <thread>

namespace zt::tests {

/// The kind of the calling thread's apartment; nothing where COM is not initialised.
inline std::optional<APTTYPE> CurrentApartment() {
  APTTYPE type = APTTYPE_CURRENT;
  APTTYPEQUALIFIER qualifier = APTTYPEQUALIFIER_NONE;
  if (FAILED(::CoGetApartmentType(&type, &qualifier))) return std::nullopt;
  return type;
}

/// Runs `body` on a new thread that has not spoken to COM.
template <typename Body>
void OnFreshThread(const Body& body) {
  std::thread(body).join();
}

/// Runs `body` on a new thread that chose its apartment (COINIT_...), and leaves that again.
template <typename Body>
void OnThreadWithApartment(COINIT apartment, const Body& body) {
  OnFreshThread([&] {
    if (FAILED(::CoInitializeEx(nullptr, apartment))) std::terminate();
    body();
    ::CoUninitialize();
  });
}

}  // namespace zt::tests
