#pragma once

#include <windows.h>

#include <memory>

namespace zt::base {

struct HandleCloser {
  using pointer = HANDLE;
  void operator()(HANDLE handle) const { ::CloseHandle(handle); }
};

/// Owns a handle of the kernel; null is none.
using UniqueHandle = std::unique_ptr<void, HandleCloser>;

/// Owns what `CreateFile` gave, which tells of failure by INVALID_HANDLE_VALUE; null then.
inline UniqueHandle OwnFile(HANDLE file) {
  return UniqueHandle(file != INVALID_HANDLE_VALUE ? file : nullptr);
}

}  // namespace zt::base
