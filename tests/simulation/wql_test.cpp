#include <gmock/gmock.h>

#include <utility>

#include "simulation/machine.h"
#include "support/status_codes.h"
#include "support/wmi_namespace.h"
#include "zt/shared/wmi/wmi_client.h"

// Queries over the machine's tables, as a sampler runs them.
namespace zt::tests {
namespace {

using shared::wmi::kPropertyNotFound;
using shared::wmi::kSuccess;
using shared::wmi::WMIClient;
using simulation::Machine;
using simulation::WmiRow;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

WmiRow Adapter(const char* name, std::int32_t index, bool physical) {
  return {{"Name", name}, {"Index", index}, {"Physical", physical}};
}

class WqlTest : public ::testing::Test {
 protected:
  WqlTest() {
    Machine machine;
    machine.wmi.classes["Win32_NetworkAdapter"] = {Adapter("Wi-Fi", 5, true), Adapter("Ethernet", 7, true),
                                                   Adapter(R"(Bob's "VPN" \ Tunnel)", 9, false)};
    simulation::UseMachine(std::move(machine));
  }

  // Names of the rows that a query gives; the query has to succeed.
  std::vector<std::string> NamesOf(const std::wstring& wql) {
    EXPECT_EQ(client_.ExecQuery(wql), kSuccess);
    std::vector<std::string> names;
    while (client_.Next()) {
      client_.GetValue(L"Name", names.emplace_back());
    }
    return names;
  }

  std::vector<std::string> NamesWhere(const std::wstring& condition) {
    return NamesOf(L"SELECT Name FROM Win32_NetworkAdapter WHERE " + condition);
  }

  WMIClient client_{tests::kWmiNamespace};
};

TEST_F(WqlTest, RowsComeInTheirOrder) {
  EXPECT_THAT(NamesOf(L"SELECT Name FROM Win32_NetworkAdapter"),
              ElementsAre("Wi-Fi", "Ethernet", R"(Bob's "VPN" \ Tunnel)"));
}

TEST_F(WqlTest, AClassThatIsNotStatedHasNoRowsAndSucceeds) {
  EXPECT_THAT(NamesOf(L"SELECT Name FROM Win32_Unheard"), IsEmpty());
}

TEST_F(WqlTest, ThereIsNoRowBeforeTheFirstQuery) {
  std::uint32_t value = 7;
  EXPECT_FALSE(client_.Next());
  EXPECT_EQ(client_.GetValue(L"Name", value), kPropertyNotFound);
  EXPECT_EQ(value, 7U);
}

TEST_F(WqlTest, PastTheLastRowNothingCanBeReadAndNothingFollows) {
  ASSERT_EQ(NamesOf(L"SELECT Name FROM Win32_NetworkAdapter").size(), 3U);
  std::string name = "untouched";
  EXPECT_EQ(client_.GetValue(L"Name", name), kPropertyNotFound);
  EXPECT_EQ(name, "untouched");
  EXPECT_FALSE(client_.Next());
}

TEST_F(WqlTest, ANewQueryDropsTheRowsOfTheOneBefore) {
  ASSERT_EQ(client_.ExecQuery(L"SELECT Name FROM Win32_NetworkAdapter"), kSuccess);
  ASSERT_TRUE(client_.Next());
  ASSERT_EQ(client_.ExecQuery(L"SELECT Name FROM Win32_Unheard"), kSuccess);
  std::string name;
  EXPECT_EQ(client_.GetValue(L"Name", name), kPropertyNotFound);
  EXPECT_FALSE(client_.Next());
}

TEST_F(WqlTest, APropertyThatIsNotSelectedCannotBeRead) {
  ASSERT_EQ(client_.ExecQuery(L"SELECT Name, Physical FROM Win32_NetworkAdapter"), kSuccess);
  ASSERT_TRUE(client_.Next());
  std::uint32_t value = 7;
  EXPECT_EQ(client_.GetValue(L"Index", value), kPropertyNotFound);
  EXPECT_EQ(value, 7U);
  std::string physical;
  EXPECT_EQ(client_.GetValue(L"Physical", physical), kSuccess);
  EXPECT_EQ(physical, "-1") << "a boolean, of which true is all bits set";
}

TEST_F(WqlTest, AStarSelectsAllProperties) {
  ASSERT_EQ(client_.ExecQuery(L"SELECT * from Win32_NetworkAdapter"), kSuccess);
  ASSERT_TRUE(client_.Next());
  std::uint32_t index = 0;
  EXPECT_EQ(client_.GetValue(L"Index", index), kSuccess);
  EXPECT_EQ(index, 5U);
}

TEST_F(WqlTest, ASelectedPropertyThatTheRowDoesNotHaveCannotBeRead) {
  ASSERT_EQ(client_.ExecQuery(L"SELECT Speed FROM Win32_NetworkAdapter"), kSuccess);
  ASSERT_TRUE(client_.Next());
  std::uint64_t value = 7;
  EXPECT_EQ(client_.GetValue(L"Speed", value), kPropertyNotFound);
  EXPECT_EQ(value, 7U);
}

TEST_F(WqlTest, KeywordsAndNamesIgnoreCase) {
  ASSERT_EQ(client_.ExecQuery(L"select nAME From WIN32_networkadapter where INDEX = 7 or index = 99"), kSuccess);
  ASSERT_TRUE(client_.Next());
  std::string name;
  EXPECT_EQ(client_.GetValue(L"NAME", name), kSuccess);
  EXPECT_EQ(name, "Ethernet");
}

TEST_F(WqlTest, TheClassOfARowCanBeRead) {
  ASSERT_EQ(client_.ExecQuery(LR"(SELECT __Class FROM win32_networkadapter WHERE Name="Wi-Fi")"), kSuccess);
  ASSERT_TRUE(client_.Next());
  std::string name;
  EXPECT_EQ(client_.GetValue(L"__CLASS", name), kSuccess);
  EXPECT_EQ(name, "Win32_NetworkAdapter");
  EXPECT_FALSE(client_.Next());
}

TEST_F(WqlTest, TextsCompareWithoutCaseInEitherQuotes) {
  EXPECT_THAT(NamesWhere(L"Name='WI-FI'"), ElementsAre("Wi-Fi"));
  EXPECT_THAT(NamesWhere(LR"(Name = "wi-fi")"), ElementsAre("Wi-Fi"));
  EXPECT_THAT(NamesWhere(L"Name = 'Wi-Fi '"), IsEmpty());
}

TEST_F(WqlTest, ABackslashEscapesTheCharacterAfterIt) {
  EXPECT_THAT(NamesWhere(LR"(Name = 'Bob\'s "VPN" \\ Tunnel')"), ElementsAre(R"(Bob's "VPN" \ Tunnel)"));
  EXPECT_THAT(NamesWhere(LR"(Name = "Bob's \"VPN\" \\ Tunnel")"), ElementsAre(R"(Bob's "VPN" \ Tunnel)"));
}

TEST_F(WqlTest, NumbersAndBooleansCompareByValue) {
  EXPECT_THAT(NamesWhere(L"Index=7"), ElementsAre("Ethernet"));
  EXPECT_THAT(NamesWhere(L"Index = '7'"), ElementsAre("Ethernet"));
  EXPECT_THAT(NamesWhere(L"Index = -7"), IsEmpty());
  EXPECT_THAT(NamesWhere(L"Name = 0"), IsEmpty());
  EXPECT_THAT(NamesWhere(L"Physical = FALSE"), ElementsAre(R"(Bob's "VPN" \ Tunnel)"));
  EXPECT_THAT(NamesWhere(L"Physical = true"), ElementsAre("Wi-Fi", "Ethernet"));
}

TEST_F(WqlTest, A64BitTextComparesAsTheIntegerItIs) {
  Machine machine;
  machine.wmi.classes["Win32_Things"] = {{{"Name", "largest"}, {"Size", "18446744073709551615"}},
                                         {{"Name", "one less"}, {"Size", "18446744073709551614"}},
                                         {{"Name", "real"}, {"Size", 2.5}},
                                         {{"Name", "nothing"}, {"Size", simulation::WmiNull{}}},
                                         {{"Name", "empty"}, {"Size", ""}},
                                         {{"Name", "absent"}}};
  simulation::UseMachine(std::move(machine));
  EXPECT_THAT(NamesOf(L"SELECT Name FROM Win32_Things WHERE Size = 18446744073709551615"), ElementsAre("largest"));
  EXPECT_THAT(NamesOf(L"SELECT Name FROM Win32_Things WHERE Size = '18446744073709551614'"), ElementsAre("one less"));
  EXPECT_THAT(NamesOf(L"SELECT Name FROM Win32_Things WHERE Size = +2.50"), ElementsAre("real"));
  EXPECT_THAT(NamesOf(L"SELECT Name FROM Win32_Things WHERE Size = 0"), IsEmpty());
  EXPECT_THAT(NamesOf(L"SELECT Name FROM Win32_Things WHERE Size = ''"), ElementsAre("empty"));
}

TEST_F(WqlTest, AndBindsCloserThanOr) {
  EXPECT_THAT(NamesWhere(L"Name='Wi-Fi' OR Physical=TRUE AND Index=9"), ElementsAre("Wi-Fi"));
  EXPECT_THAT(NamesWhere(L"(Name='Wi-Fi' OR Physical=FALSE) AND (Index=9)"), ElementsAre(R"(Bob's "VPN" \ Tunnel)"));
}

TEST_F(WqlTest, ManyTermsSelectTheirRowsOnce) {
  EXPECT_THAT(NamesWhere(L"Index=7 OR Index=5 OR Name='Ethernet'"), ElementsAre("Wi-Fi", "Ethernet"));
}

TEST_F(WqlTest, AssociationsAreFoundByTheTextBetweenTheBraces) {
  Machine machine;
  machine.wmi.associations = {
      {R"(Win32_DiskDrive.DeviceID='\\.\PHYSICALDRIVE0')", "Win32_DiskPartition", {{{"Name", "#0"}}, {{"Name", "#1"}}}},
      {R"(Win32_DiskDrive.DeviceID='\\.\PHYSICALDRIVE0')", "Win32_Other", {{{"Name", "other"}}}},
      {"Win32_Thing.Id='{A}'", "Win32_DiskPartition", {{{"Name", "braced"}}}}};
  simulation::UseMachine(std::move(machine));
  EXPECT_THAT(NamesOf(LR"(ASSOCIATORS OF {Win32_DiskDrive.DeviceID='\\.\PHYSICALDRIVE0'} )"
                      L"WHERE ResultClass = Win32_DiskPartition"),
              ElementsAre("#0", "#1"));
  EXPECT_THAT(NamesOf(LR"(ASSOCIATORS OF {Win32_DiskDrive.DeviceID='\\.\physicaldrive0'} )"
                      L"WHERE ResultClass = Win32_DiskPartition"),
              IsEmpty());
  EXPECT_THAT(NamesOf(LR"(associators of {Win32_DiskDrive.DeviceID='\\.\PHYSICALDRIVE0'} )"
                      L"where resultclass=win32_other"),
              ElementsAre("other"));
  EXPECT_THAT(NamesOf(LR"(ASSOCIATORS OF {Win32_DiskDrive.DeviceID='\\.\PHYSICALDRIVE0'})"),
              ElementsAre("#0", "#1", "other"));
  EXPECT_THAT(NamesOf(L"ASSOCIATORS OF {Win32_Thing.Id='{A}'} WHERE ResultClass = Win32_DiskPartition"),
              ElementsAre("braced"));
}

TEST_F(WqlTest, MalformedQueriesAreInvalid) {
  for (const wchar_t* wql : {L"",
                             L"Win32_NetworkAdapter",
                             L"SELECT FROM Win32_NetworkAdapter",
                             L"SELECT Name",
                             L"SELECT Name FROM",
                             L"SELECT Name, FROM Win32_NetworkAdapter",
                             L"SELECT Name Index FROM Win32_NetworkAdapter",
                             L"SELECT Name FROM Win32_NetworkAdapter WHERE",
                             L"SELECT Name FROM Win32_NetworkAdapter WHERE Name",
                             L"SELECT Name FROM Win32_NetworkAdapter WHERE Name =",
                             L"SELECT Name FROM Win32_NetworkAdapter WHERE Name = x",
                             L"SELECT Name FROM Win32_NetworkAdapter WHERE Name = 'x",
                             L"SELECT Name FROM Win32_NetworkAdapter WHERE Name = 'x\\",
                             L"SELECT Name FROM Win32_NetworkAdapter WHERE Index = 1-2",
                             L"SELECT Name FROM Win32_NetworkAdapter WHERE Index = 7x",
                             L"SELECT Name FROM Win32_NetworkAdapter WHERE Index = 7 OR",
                             L"SELECT Name FROM Win32_NetworkAdapter WHERE (Index = 7",
                             L"SELECT Name FROM Win32_NetworkAdapter WHERE Index = 7)",
                             L"SELECT Name FROM Win32_NetworkAdapter; more",
                             L"SELECT Name FROM Win32_NetworkAdapter extra",
                             L"ASSOCIATORS {x}",
                             L"ASSOCIATORS OF",
                             L"ASSOCIATORS OF x",
                             L"ASSOCIATORS OF {x",
                             L"ASSOCIATORS OF {x} WHERE ResultClass",
                             L"ASSOCIATORS OF {x} WHERE Role = Y"}) {
    EXPECT_EQ(client_.ExecQuery(wql), tests::kInvalidQuery) << ::testing::PrintToString(std::wstring(wql));
    EXPECT_FALSE(client_.Next());
  }
}

TEST_F(WqlTest, AParenthesisInMoreThan64OthersIsInvalid) {
  const auto nested = [](std::size_t levels) {
    return L"SELECT Name FROM Win32_NetworkAdapter WHERE " + std::wstring(levels, L'(') + L"Index = 7" +
           std::wstring(levels, L')');
  };
  EXPECT_THAT(NamesOf(nested(64)), ElementsAre("Ethernet"));
  EXPECT_EQ(client_.ExecQuery(nested(65)), tests::kInvalidQuery);
  // More than any stack holds.
  EXPECT_EQ(client_.ExecQuery(nested(100'000)), tests::kInvalidQuery);
}

TEST_F(WqlTest, ManyParenthesesBesideOneAnotherAreNoLevels) {
  std::wstring condition = L"(Index = 7)";
  for (int i = 0; i < 100; ++i) condition += L" OR (Index = 7)";
  EXPECT_THAT(NamesWhere(condition), ElementsAre("Ethernet"));
}

TEST_F(WqlTest, TextsOutsideAsciiPassBothWays) {
  Machine machine;
  machine.wmi.classes["Win32_Things"] = {{{"Name", "Caf\xC3\xA9 \xF0\x9F\x93\xB6"}}};
  simulation::UseMachine(std::move(machine));
  EXPECT_THAT(NamesOf(L"SELECT Name FROM Win32_Things WHERE Name = 'Caf\u00E9 \U0001F4F6'"),
              ElementsAre("Caf\xC3\xA9 \xF0\x9F\x93\xB6"));
}

}  // namespace
}  // namespace zt::tests
