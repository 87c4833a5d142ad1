#pragma once

#include <algorithm>
#include <cstddef>
#include <type_traits>

namespace zt::base {

/// The name by which a library exports a function, as a template's argument: a literal.
struct EntryName {
  static constexpr std::size_t kCapacity = 64;  // the end included

  template <std::size_t size>
  consteval EntryName(const char (&name)[size]) {
    static_assert(size <= kCapacity);
    std::copy_n(name, size, text);
  }

  char text[kCapacity] = {};
};

/// A function that a library exports as `name`.
template <EntryName name, typename Signature, bool is_required>
struct EntryPoint {
  static constexpr EntryName kName = name;
  static constexpr bool kIsRequired = is_required;
  using Function = Signature;

  Function* function = nullptr;
};

/// Without it the library is of no use.
template <EntryName name, typename Signature>
using Required = EntryPoint<name, Signature, true>;

/// Not every version of the library has it.
template <EntryName name, typename Signature>
using Optional = EntryPoint<name, Signature, false>;

/// The entry point of this name among a table's.
template <EntryName name, typename Signature, bool is_required>
constexpr const EntryPoint<name, Signature, is_required>& Select(
    const EntryPoint<name, Signature, is_required>& entry_point) {
  return entry_point;
}

/// The functions of a library that is looked up at run time. Each stands once, as one of the `EntryPoints`, with its
/// name and its type: a caller asks for it by that name, and a stand-in of the library declares it by its type.
template <typename... EntryPoints>
class FunctionTable : public EntryPoints... {
 public:
  /// None of them, as in a library that is missing.
  constexpr FunctionTable() = default;

  /// Those that `library` exports; it has to stay loaded while they are called. Its operation `Find<Function>(name)`
  /// gives a function's address, null where there is none.
  template <typename Library>
  static FunctionTable In(const Library& library) {
    FunctionTable table;
    (table.template Bind<EntryPoints>(library), ...);
    return table;
  }

  /// Whether every required function is there.
  bool IsComplete() const {
    // coverage: the compiler knows of each function whether it is required
    return ((!EntryPoints::kIsRequired || static_cast<const EntryPoints&>(*this).function != nullptr) && ...);
  }

  /// The function of this name; null where the library does not export it. A name that is not in the table does not
  /// compile.
  template <EntryName name>
  auto* Get() const {
    return Select<name>(*this).function;
  }

 private:
  template <typename Entry, typename Library>
  void Bind(const Library& library) {
    Entry::function = library.template Find<typename Entry::Function>(Entry::kName.text);
  }
};

/// The type of a table's function of this name.
template <typename Table, EntryName name>
using FunctionIn = std::remove_pointer_t<decltype(Table().template Get<name>())>;

}  // namespace zt::base
