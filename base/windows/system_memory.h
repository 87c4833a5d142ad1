#pragma once

#include <objbase.h>
#include <windows.h>

#include <memory>

/// Memory that the system hands out, and takes back by a function of its own.
namespace zt::base {

struct TaskMemoryDeleter {
  void operator()(void* memory) const { ::CoTaskMemFree(memory); }
};

/// Owns what COM or the shell handed out.
template <typename T>
using UniqueTaskMemory = std::unique_ptr<T, TaskMemoryDeleter>;

struct LocalMemoryDeleter {
  void operator()(void* memory) const { ::LocalFree(memory); }
};

/// Owns what is to be given back by `LocalFree`.
template <typename T>
using UniqueLocalMemory = std::unique_ptr<T, LocalMemoryDeleter>;

}  // namespace zt::base
