#pragma once

#include <functional>
#include <map>
#include <string>

#include "base/function_table.h"

namespace zt::tests {

/// A library for a function table to be bound in, which exports what a test gives it.
template <typename Table>
class FakeLibrary {
 public:
  /// Exports a function by its name in the table, in whose type it has to be.
  template <base::EntryName name>
  FakeLibrary& Export(base::FunctionIn<Table, name>* function) {
    functions_[name.text] = reinterpret_cast<AnyFunction*>(function);
    return *this;
  }

  /// Exports the function of this name no more.
  template <base::EntryName name>
  void Withdraw() {
    functions_.erase(name.text);
  }

  template <typename Function>
  Function* Find(const char* name) const {
    const auto found = functions_.find(name);
    return found != functions_.end() ? reinterpret_cast<Function*>(found->second) : nullptr;
  }

 private:
  using AnyFunction = void();

  std::map<std::string, AnyFunction*, std::less<>> functions_;
};

}  // namespace zt::tests
