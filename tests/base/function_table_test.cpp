#include "base/function_table.h"

#include <gtest/gtest.h>

#include <type_traits>

#include "support/fake_library.h"

namespace zt::base {
namespace {

using Table = FunctionTable<Required<"Double", int(int)>, Required<"Length", unsigned(const char*)>,
                            Optional<"Negate", int(int)>>;
using Library = tests::FakeLibrary<Table>;

int Double(int number) {
  return 2 * number;
}
unsigned Length(const char* text) {
  return text[0] == '\0' ? 0 : 1 + Length(text + 1);
}
int Negate(int number) {
  return -number;
}

Library LibraryWithAll() {
  Library library;
  library.Export<"Double">(&Double).Export<"Length">(&Length).Export<"Negate">(&Negate);
  return library;
}

static_assert(std::is_same_v<FunctionIn<Table, "Double">, int(int)>);
static_assert(std::is_same_v<FunctionIn<Table, "Length">, unsigned(const char*)>);

template <EntryName name>
constexpr bool kIsInTheTable = requires(const Table& table) {
  Select<name>(table);
};
static_assert(kIsInTheTable<"Negate"> && !kIsInTheTable<"Negat"> && !kIsInTheTable<"Negates"> && !kIsInTheTable<"">);

TEST(FunctionTableTest, FindsEachFunctionByItsName) {
  const Table table = Table::In(LibraryWithAll());
  EXPECT_EQ(table.Get<"Double">(), &Double);
  EXPECT_EQ(table.Get<"Length">(), &Length);
  EXPECT_EQ(table.Get<"Negate">(), &Negate);
  EXPECT_EQ(table.Get<"Double">()(4), 8);
  EXPECT_EQ(table.Get<"Length">()("four"), 4U);
  EXPECT_TRUE(table.IsComplete());
}

TEST(FunctionTableTest, OfNoLibraryHasNone) {
  const Table table;
  EXPECT_EQ(table.Get<"Double">(), nullptr);
  EXPECT_EQ(table.Get<"Negate">(), nullptr);
  EXPECT_FALSE(table.IsComplete());
  EXPECT_FALSE(Table::In(Library()).IsComplete());
}

TEST(FunctionTableTest, IsCompleteWithoutWhatIsOptional) {
  Library library;
  library.Export<"Double">(&Double).Export<"Length">(&Length);
  const Table table = Table::In(library);
  EXPECT_EQ(table.Get<"Negate">(), nullptr);
  EXPECT_TRUE(table.IsComplete());
}

TEST(FunctionTableTest, IsNotCompleteWithoutOneThatIsRequired) {
  Library without_last;
  without_last.Export<"Double">(&Double).Export<"Negate">(&Negate);
  EXPECT_FALSE(Table::In(without_last).IsComplete());
  Library without_first;
  without_first.Export<"Length">(&Length).Export<"Negate">(&Negate);
  EXPECT_FALSE(Table::In(without_first).IsComplete());
  EXPECT_EQ(Table::In(without_first).Get<"Length">(), &Length) << "what is there can be called all the same";
}

}  // namespace
}  // namespace zt::base
