// The linear summary gives what the query gives over the tables themselves, row map by row map.
#include <algorithm>
#include <functional>
#include <random>

#include "store/profile_table.h"
#include "store/store_test.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

constexpr int kHours = 12;

/// Samples of a few hours with everything that a writer may leave in them, in a random order of time.
class RandomSamples {
 public:
  explicit RandomSamples(unsigned seed) : random_(seed) {}

  void Fill(tests::SampleStore& store, int rows) {
    store.Execute("BEGIN");
    for (int i = 0; i < rows; ++i) {
      store.AddThermal(Time(), {{"cpu_temp", Reading()}, {"fan1_current_tach_speed", Reading()}});
      store.AddNetwork(
          Time(),
          {{"interface_device_id", OneOf({"'{A}'", "'{a}'", "'{A} '", "'{B}'", "'01'", "'1'", "1", "1.0", "NULL"})},
           {"network_trust_level", OneOf({"'Public'", "'Private'", "NULL", "char(0)", "'ü\"'"})},
           {"is_managed", OneOf({"0", "1", "NULL"})},
           {"channel", OneOf({"1", "36", "149", "'36'", "NULL"})},
           {"radio_type", OneOf({"'802.11ax'", "CAST(x'41FF' AS TEXT)", "NULL"})},
           {"rx_rate", Reading()},
           {"signal_strength", Reading()},
           {"bytes_received", OneOf({"4294967296", "-1", "0", "1.5"})},
           {"is_vpn_connected", OneOf({"0", "1", "NULL"})},
           {"has_network_access", OneOf({"0", "1", "'yes'"})},
           {"profile_name_hash", OneOf({"x'AB'", "x'CD00'", "x''", "'text'", "NULL", "7"})},
           {"profile_authentication", OneOf({"'WPA2'", "'wpa2'", "'Open'", "2.5", "2.5000000000000004", "NULL"})},
           {"profile_encryption", OneOf({"'AES'", "'None'"})}});
    }
    store.Execute("COMMIT");
  }

 private:
  unsigned Next(unsigned bound) { return static_cast<unsigned>(random_()) % bound; }
  std::string OneOf(std::initializer_list<const char*> literals) {
    return *(literals.begin() + Next(static_cast<unsigned>(literals.size())));
  }
  std::string Time() {
    if (Next(50) == 0) return "unreadable";
    const auto two_digits = [&](unsigned bound) { return std::to_string(100 + Next(bound)).substr(1); };
    return "2026-03-07" + std::string(OneOf({"T", " "})) + two_digits(kHours) + ":" + two_digits(60) + ":" +
           two_digits(60) + OneOf({"", ".123Z", "+01:00"});
  }
  std::string Reading() { return Next(20) == 0 ? "NULL" : std::to_string(Next(100000)) + "e-3"; }

  std::mt19937 random_;
};

class LinearSummaryTest : public StoreTest {
 protected:
  void ExpectSameAsPlain() const {
    const SummaryRowsBySource plain = QueryPlainly(path_);
    EXPECT_EQ(Query(), plain);
    EXPECT_FALSE(plain.empty());
  }
};

class SeededLinearSummaryTest : public LinearSummaryTest, public testing::WithParamInterface<unsigned> {};

TEST_P(SeededLinearSummaryTest, ThousandsOfShuffledSamplesGiveTheSameRows) {
  tests::SampleStore store = NewStore();
  RandomSamples(GetParam()).Fill(store, 2000);
  ExpectSameAsPlain();
}

INSTANTIATE_TEST_SUITE_P(Seeds, SeededLinearSummaryTest, testing::Values(1U, 20U, 300U));

/// How the host may define its tables.
struct Definition {
  const char* name;
  std::function<void(tests::SampleStore&)> create;
};

void PrintTo(const Definition& definition, std::ostream* out) {
  *out << definition.name;
}

std::string Replaced(std::string text, const std::string& from, const std::string& to) {
  const std::size_t at = text.find(from);
  EXPECT_NE(at, std::string::npos) << from;
  return text.replace(at, from.size(), to);
}

std::string WithoutTypes(const std::string& columns) {
  std::string result;
  for (std::size_t start = 0; start < columns.size();) {
    const std::size_t end = std::min(columns.find(", ", start), columns.size());
    const std::string column = columns.substr(start, end - start);
    result += (start == 0 ? "" : ", ") + column.substr(0, column.find(' '));
    start = end + 2;
  }
  return result;
}

void CreateWithNetworkColumns(tests::SampleStore& store, const std::string& columns, const char* options = "") {
  store.Execute(std::string("CREATE TABLE ThermalData(") + tests::kThermalColumns + ")");
  store.Execute("CREATE TABLE NetworkData(" + columns + ")" + options);
}

const std::string kColumns = tests::kNetworkColumns;
const std::string kInterface = "interface_device_id TEXT";
const std::string kKey = "id INTEGER PRIMARY KEY AUTOINCREMENT, ";

void CreateWithInterface(tests::SampleStore& store, const std::string& type) {
  CreateWithNetworkColumns(store, Replaced(kColumns, kInterface, "interface_device_id " + type));
}

const Definition kDefinitions[] = {
    {"ColumnsWithoutTypes",
     [](auto& store) { store.CreateTables(WithoutTypes(tests::kThermalColumns), WithoutTypes(kColumns)); }},
    {"InterfacesThatIgnoreCase",
     [](auto& store) {
       CreateWithNetworkColumns(store, Replaced(kColumns, kInterface, kInterface + " COLLATE NOCASE"));
     }},
    {"InterfacesThatIgnoreBlanks", [](auto& store) { CreateWithInterface(store, "TEXT COLLATE RTRIM"); }},
    {"InterfacesOfWholeNumbers", [](auto& store) { CreateWithInterface(store, "INTEGER"); }},
    {"InterfacesOfRealNumbers", [](auto& store) { CreateWithInterface(store, "REAL"); }},
    {"InterfacesOfNumbers", [](auto& store) { CreateWithInterface(store, "NUMERIC COLLATE NOCASE"); }},
    {"InterfacesOfBytes", [](auto& store) { CreateWithInterface(store, "BLOB"); }},
    {"InterfacesOfATypeWithQuotes", [](auto& store) { CreateWithInterface(store, "\"a \"\"type\"\" (1)\""); }},
    {"StrictTablesWithAnyInterface",
     [](auto& store) {
       CreateWithNetworkColumns(store,
                                "id INTEGER PRIMARY KEY, date_time TEXT, interface_device_id ANY, network_trust_level "
                                "ANY, is_managed ANY, channel ANY, radio_type ANY, nominal_speed ANY, tx_rate ANY, "
                                "rx_rate ANY, signal_strength ANY, bytes_received ANY, bytes_sent ANY, "
                                "co_channel_interference_count ANY, adjacent_channel_interference_count ANY, "
                                "is_vpn_connected ANY, has_network_access ANY, has_internet_access ANY, "
                                "tcp_ipv4_current_connections ANY, tcp_ipv4_failed_connections ANY, "
                                "tcp_ipv4_errors_received ANY, tcp_ipv6_failed_connections ANY, profile_name_hash ANY, "
                                "profile_authentication ANY, profile_encryption ANY",
                                " STRICT");
     }},
    {"AColumnNamedLikeTheRowNumber",
     [](auto& store) { CreateWithNetworkColumns(store, kColumns + ", _ROWID_ INTEGER DEFAULT (random() % 100)"); }},
    {"ProfilesThatIgnoreCase",
     [](auto& store) {
       CreateWithNetworkColumns(
           store, Replaced(kColumns, "profile_authentication TEXT", "profile_authentication TEXT COLLATE NOCASE"));
     }},
    {"TimesAndFlagsAsTexts",
     [](auto& store) {
       CreateWithNetworkColumns(store, Replaced(Replaced(kColumns, "channel INTEGER", "channel TEXT COLLATE NOCASE"),
                                                "is_vpn_connected INTEGER", "is_vpn_connected TEXT"));
     }},
    {"AKeyWithoutRowIds",
     [](auto& store) {
       CreateWithNetworkColumns(store, Replaced(kColumns, kKey, "id BLOB DEFAULT (randomblob(8)) PRIMARY KEY, "),
                                " WITHOUT ROWID");
     }},
    {"AKeyOfInterfacesWithoutRowIds",
     [](auto& store) {
       CreateWithNetworkColumns(store,
                                Replaced(kColumns, kKey, "id BLOB DEFAULT (randomblob(8)), ") +
                                    ", salt BLOB DEFAULT (randomblob(8)), "
                                    "PRIMARY KEY(interface_device_id, profile_name_hash, salt)",
                                " WITHOUT ROWID");
       store.Execute(
           "CREATE TRIGGER no_null BEFORE INSERT ON NetworkData WHEN NEW.interface_device_id IS NULL OR "
           "NEW.profile_name_hash IS NULL BEGIN SELECT RAISE(IGNORE); END");
     }},
    {"GeneratedColumns",
     [](auto& store) {
       CreateWithNetworkColumns(store, Replaced(kColumns, "profile_encryption TEXT",
                                                "profile_encryption TEXT, total INTEGER AS (bytes_sent + "
                                                "bytes_received), stored TEXT AS (upper(radio_type)) STORED"));
     }},
    {"ChecksAndDefaults",
     [](auto& store) {
       CreateWithNetworkColumns(store, kColumns + ", noted TEXT DEFAULT CURRENT_TIMESTAMP CHECK(noted <> '')");
     }},
    {"AHugeColumnBesideTheReadings",
     [](auto& store) { CreateWithNetworkColumns(store, kColumns + ", raw BLOB DEFAULT (randomblob(4000))"); }},
    {"AColumnNamedLikeTheHour",
     [](auto& store) { CreateWithNetworkColumns(store, kColumns + ", hour_window TEXT DEFAULT 'x'"); }},
    {"AColumnNamedWithQuotes",
     [](auto& store) { CreateWithNetworkColumns(store, kColumns + ", \"a \"\"quoted\"\" name\" TEXT DEFAULT 'x'"); }},
    {"TablesNamedInAnotherCase",
     [](auto& store) {
       store.CreateTables();
       store.Execute("ALTER TABLE NetworkData RENAME TO n");
       store.Execute("ALTER TABLE n RENAME TO NETWORKDATA");
     }},
    {"AViewWithAnOrderOfItsOwn",
     [](auto& store) {
       CreateWithNetworkColumns(store, kColumns);
       store.Execute("ALTER TABLE NetworkData RENAME TO Samples");
       store.Execute("CREATE VIEW NetworkData AS SELECT * FROM Samples ORDER BY rx_rate");
       store.Execute(
           "CREATE TRIGGER into_samples INSTEAD OF INSERT ON NetworkData BEGIN INSERT INTO Samples SELECT "
           "NULL, NEW.date_time, NEW.interface_device_id, NEW.network_trust_level, NEW.is_managed, "
           "NEW.channel, NEW.radio_type, NEW.nominal_speed, NEW.tx_rate, NEW.rx_rate, NEW.signal_strength, "
           "NEW.bytes_received, NEW.bytes_sent, NEW.co_channel_interference_count, "
           "NEW.adjacent_channel_interference_count, NEW.is_vpn_connected, NEW.has_network_access, "
           "NEW.has_internet_access, NEW.tcp_ipv4_current_connections, NEW.tcp_ipv4_failed_connections, "
           "NEW.tcp_ipv4_errors_received, NEW.tcp_ipv6_failed_connections, NEW.profile_name_hash, "
           "NEW.profile_authentication, NEW.profile_encryption; END");
     }},
    {"TextsInUtf16",
     [](auto& store) {
       store.Execute("PRAGMA encoding='UTF-16le'");
       store.CreateTables();
     }},
};

class DefinitionLinearSummaryTest : public LinearSummaryTest, public testing::WithParamInterface<Definition> {};

TEST_P(DefinitionLinearSummaryTest, GivesTheSameRows) {
  tests::SampleStore store(path_);
  GetParam().create(store);
  RandomSamples(5).Fill(store, 600);
  ExpectSameAsPlain();
}

TEST_P(DefinitionLinearSummaryTest, GivesTheSameRowsAfterTheHostAnalysedItsTables) {
  tests::SampleStore store(path_);
  GetParam().create(store);
  RandomSamples(6).Fill(store, 600);
  store.Execute("ANALYZE");
  ExpectSameAsPlain();
}

INSTANTIATE_TEST_SUITE_P(Tables, DefinitionLinearSummaryTest, testing::ValuesIn(kDefinitions),
                         [](const auto& definition) { return definition.param.name; });

/// An index that the query over the tables may walk, so that the rows come to it in another order.
struct Index {
  const char* name;
  const char* sql;
};

void PrintTo(const Index& index, std::ostream* out) {
  *out << index.name;
}

const Index kIndexes[] = {
    {"OnTheTime", "CREATE INDEX i ON NetworkData(date_time)"},
    {"OnInterfaceAndTime", "CREATE INDEX i ON NetworkData(interface_device_id, date_time)"},
    {"OnInterfaceAndAReading", "CREATE INDEX i ON NetworkData(interface_device_id, rx_rate)"},
    {"UniqueOnInterfaceAndTime", "CREATE UNIQUE INDEX i ON NetworkData(interface_device_id, date_time DESC, id DESC)"},
    {"OnTheProfiles",
     "CREATE INDEX i ON NetworkData(profile_encryption, profile_authentication, profile_name_hash, "
     "interface_device_id, date_time)"},
    {"OnSomeRows", "CREATE INDEX i ON NetworkData(profile_name_hash) WHERE interface_device_id IS NOT NULL"},
    {"OnEverythingThatProfilesTake",
     "CREATE INDEX i ON NetworkData(profile_authentication DESC, date_time, interface_device_id, profile_name_hash, "
     "profile_encryption)"},
    {"OnEverything",
     "CREATE INDEX i ON NetworkData(rx_rate DESC, date_time, interface_device_id, network_trust_level, is_managed, "
     "channel, radio_type, nominal_speed, tx_rate, signal_strength, bytes_received, bytes_sent, "
     "co_channel_interference_count, adjacent_channel_interference_count, is_vpn_connected, has_network_access, "
     "has_internet_access, tcp_ipv4_current_connections, tcp_ipv4_failed_connections, tcp_ipv4_errors_received, "
     "tcp_ipv6_failed_connections, profile_name_hash, profile_authentication, profile_encryption); "
     "CREATE INDEX j ON ThermalData(cpu_temp DESC, date_time, ext_sensor_temp, loc_sensor_temp, "
     "fan1_current_tach_speed, fan1_target_tach_speed, fan1_speed_step, fan2_current_tach_speed, "
     "fan2_target_tach_speed, fan2_speed_step)"},
    {"OnTheHour",
     "CREATE INDEX i ON NetworkData(strftime('%Y-%m-%dT%H:00:00.000Z', substr(date_time, 1, 19)), "
     "interface_device_id, profile_name_hash)"},
};

class IndexLinearSummaryTest : public LinearSummaryTest, public testing::WithParamInterface<Index> {
 protected:
  void Fill(tests::SampleStore& store) const {
    RandomSamples samples(4);
    samples.Fill(store, 600);
    // Sums of these depend on the order in which they are added up.
    store.Execute("UPDATE NetworkData SET rx_rate = rx_rate * 1e15 / 7 WHERE id % 5 = 0");
    store.Execute("UPDATE ThermalData SET cpu_temp = cpu_temp * 1e15 / 7 WHERE id % 5 = 0");
  }
};

TEST_P(IndexLinearSummaryTest, LeavesTheOrderOfTheRowsInTheTable) {
  tests::SampleStore store = NewStore();
  Fill(store);
  const SummaryRowsBySource in_order_of_rows = QueryPlainly(path_);
  store.Execute(GetParam().sql);
  EXPECT_EQ(Query(), in_order_of_rows);
  store.Execute("ANALYZE");
  EXPECT_EQ(Query(), in_order_of_rows);
}

INSTANTIATE_TEST_SUITE_P(Indexes, IndexLinearSummaryTest, testing::ValuesIn(kIndexes),
                         [](const auto& index) { return index.param.name; });

// What tells that the tables themselves were not asked: their indexes decide there.
TEST_F(LinearSummaryTest, TheOrderOfTheProfilesIsThatOfTheRowsAndNotThatOfAnIndex) {
  tests::SampleStore store = NewStore();
  store.AddNetwork("2026-03-07T06:30:00", {{"profile_name_hash", "x'02'"}});
  store.AddNetwork("2026-03-07T06:31:00", {{"profile_name_hash", "x'01'"}});
  const SummaryRowsBySource in_order_of_rows = QueryPlainly(path_);
  store.Execute("CREATE INDEX i ON NetworkData(interface_device_id, profile_name_hash)");
  ASSERT_NE(QueryPlainly(path_), in_order_of_rows);
  EXPECT_EQ(Query(), in_order_of_rows);
}

TEST_F(LinearSummaryTest, AnIndexDoesNotDecideWhereRowsHaveNoNumbersEither) {
  tests::SampleStore store = NewStore();
  store.Execute("ALTER TABLE ThermalData ADD COLUMN _rowid_ INTEGER DEFAULT 1");
  for (const char* reading : {"1e16", "1", "-1e16", "3"}) {
    store.AddThermal("2026-03-07T06:30:00", {{"cpu_temp", reading}});
  }
  const SummaryRowsBySource in_order_of_rows = QueryPlainly(path_);
  store.Execute(
      "CREATE INDEX i ON ThermalData(cpu_temp, date_time, ext_sensor_temp, loc_sensor_temp, fan1_current_tach_speed, "
      "fan1_target_tach_speed, fan1_speed_step, fan2_current_tach_speed, fan2_target_tach_speed, fan2_speed_step)");
  ASSERT_NE(QueryPlainly(path_), in_order_of_rows);
  EXPECT_EQ(Query(), in_order_of_rows);
}

TEST_F(LinearSummaryTest, AColumnNamedLikeTheHourIsWhatSamplesAreGroupedByInManyHoursToo) {
  tests::SampleStore store = NewStore();
  store.Execute("ALTER TABLE ThermalData ADD COLUMN hour_window TEXT DEFAULT 'x'");
  store.Execute(
      "WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM n WHERE i < 10000) INSERT INTO "
      "ThermalData(date_time) SELECT strftime('%Y-%m-%dT%H:%M:%S', '2026-03-07', i || ' minutes') FROM n");
  ExpectSameAsPlain();
}

// Without the type the profiles could not be looked up by their index, and without the collation not all found.
TEST_F(LinearSummaryTest, TheTableOfProfilesComparesLikeTheSamples) {
  tests::SampleStore store(path_);
  CreateWithInterface(store, "BIGINT COLLATE NOCASE");
  ASSERT_TRUE(MakeProfileTable(store.Handle()));
  const char* type = nullptr;
  const char* collation = nullptr;
  ASSERT_EQ(sqlite3_table_column_metadata(store.Handle(), "temp", kProfileTable, "interface_device_id", &type,
                                          &collation, nullptr, nullptr, nullptr),
            SQLITE_OK);
  EXPECT_STREQ(type, "INT");
  EXPECT_STREQ(collation, "NOCASE");
}

TEST_F(LinearSummaryTest, ProfilesThatDifferInTheirLastBitAreTwo) {
  tests::SampleStore store = NewStore();
  store.Execute("DROP TABLE NetworkData");
  store.Execute("CREATE TABLE NetworkData(" + WithoutTypes(tests::kNetworkColumns) + ")");
  for (const char* authentication : {"2.5", "2.5000000000000004", "2.5", "'2.5'", "x'322E35'", "NULL", "NULL"}) {
    store.AddNetwork("2026-03-07T06:30:00", {{"profile_name_hash", authentication}});
  }
  ExpectSameAsPlain();
}

TEST_F(LinearSummaryTest, ProfilesOfAnyLengthAreToldApart) {
  tests::SampleStore store = NewStore();
  for (int repetition = 0; repetition < 2; ++repetition) {
    for (const int length : {0, 1, 100, 230, 240, 250, 260, 5000}) {
      store.AddNetwork("2026-03-07T06:30:00",
                       {{"profile_authentication", "'" + std::string(static_cast<std::size_t>(length), 'a') + "'"}});
    }
  }
  ExpectSameAsPlain();
}

TEST_F(LinearSummaryTest, HoursOfManyRunsGiveTheSameRowsWithSomeSamplesLate) {
  tests::SampleStore store = NewStore();
  store.AddThermal("2026-03-07T00:00:00");
  store.AddNetwork("2026-03-07T00:00:00");
  const std::string times =
      "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 12000), times(i, t) AS (SELECT i, "
      "strftime('%Y-%m-%dT%H:%M:%S', '2026-03-07', (i * 20 - (i % 500 = 0) * 7000) || ' seconds') FROM n) ";
  store.Execute(times + "INSERT INTO ThermalData(date_time, cpu_temp) SELECT t, i / 7.0 FROM times");
  store.Execute(times +
                "INSERT INTO NetworkData(date_time, interface_device_id, rx_rate, profile_name_hash) SELECT t, i % 3, "
                "i / 7.0, CAST(i % 7 AS BLOB) FROM times");
  ExpectSameAsPlain();
}

TEST_F(LinearSummaryTest, AValueThatJsonCannotHoldStopsTheQueryAllTheSame) {
  tests::SampleStore store = NewStore();
  RandomSamples(7).Fill(store, 600);
  store.AddNetwork("2026-03-07T06:30:00", {{"interface_device_id", "x'00'"}});
  EXPECT_EQ(Query(), QueryPlainly(path_));
  EXPECT_THAT(Query(), testing::IsEmpty());
}

TEST_F(LinearSummaryTest, ASumThatOverflowsStopsTheQueryAllTheSame) {
  tests::SampleStore store = NewStore();
  RandomSamples(7).Fill(store, 600);
  store.AddNetwork("2026-03-07T23:30:00", {{"bytes_received", "9223372036854775807"}});
  store.AddNetwork("2026-03-07T23:30:00", {{"bytes_received", "9223372036854775807"}});
  EXPECT_EQ(Query(), QueryPlainly(path_));
  EXPECT_THAT(Query(), testing::IsEmpty());
}

TEST_F(LinearSummaryTest, ATimeThatMeansTheMomentOfReadingIsSummarisedAllTheSame) {
  tests::SampleStore store = NewStore();
  RandomSamples(8).Fill(store, 300);
  store.AddNetwork("now");
  SummaryRowsBySource before;
  SummaryRowsBySource rows;
  SummaryRowsBySource after;
  do {
    before = QueryPlainly(path_);
    rows = Query();
    after = QueryPlainly(path_);
  } while (before != after);  // the hour ended in between
  EXPECT_EQ(rows, before);
  EXPECT_EQ(rows.at("network").size(), kHours + 2U);
}

TEST_F(LinearSummaryTest, ASampleThatWasDeletedInTheMiddleLeavesTheOrderOfTheOthers) {
  tests::SampleStore store = NewStore();
  RandomSamples(9).Fill(store, 600);
  store.Execute("DELETE FROM NetworkData WHERE id % 3 = 0");
  store.Execute("UPDATE NetworkData SET id = 5000 - id WHERE id % 5 = 0");
  ExpectSameAsPlain();
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
