#pragma once

#include <windows.h>
#include <oleauto.h>
#include <wrl/client.h>

#include <string_view>

namespace zt::com {

using Microsoft::WRL::ComPtr;

/// Gives `pointer` the reference that a call handed out. (Attach of mingw-w64's ComPtr adds a reference of its own.)
template <typename Interface>
void TakeOver(ComPtr<Interface>& pointer, Interface* reference) {
  *pointer.ReleaseAndGetAddressOf() = reference;
}

/// Owns a BSTR: the system's counted wide text.
class Bstr {
 public:
  /// Null when there is no memory for the text.
  explicit Bstr(std::wstring_view text) : text_(::SysAllocStringLen(text.data(), static_cast<UINT>(text.size()))) {}
  ~Bstr() { ::SysFreeString(text_); }
  Bstr(const Bstr&) = delete;
  Bstr& operator=(const Bstr&) = delete;

  BSTR Get() const { return text_; }

 private:
  BSTR text_;
};

/// Owns a VARIANT and what it holds.
class Variant {
 public:
  Variant() { ::VariantInit(&value_); }
  ~Variant() { ::VariantClear(&value_); }
  Variant(const Variant&) = delete;
  Variant& operator=(const Variant&) = delete;

  const VARIANT& Get() const { return value_; }
  VARIANT& Get() { return value_; }
  VARTYPE Type() const { return value_.vt; }

  /// Drops what it holds; for a call that writes a VARIANT, or fields that are set by hand.
  VARIANT* Receive() {
    ::VariantClear(&value_);
    return &value_;
  }

 private:
  VARIANT value_;
};

/// The text of a BSTR, whose null pointer is an empty text.
inline std::wstring_view View(BSTR text) {
  return text == nullptr ? std::wstring_view() : std::wstring_view(text, ::SysStringLen(text));
}

}  // namespace zt::com
