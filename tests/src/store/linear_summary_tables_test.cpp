// The linear summary over tables and indexes as hosts may define them gives what the query gives over the tables.
#include <functional>

#include "random_samples.h"
#include "table_definitions.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

/// How the host may define its tables.
struct Definition {
  const char* name;
  std::function<void(tests::SampleStore&)> create;
};

void PrintTo(const Definition& definition, std::ostream* out) {
  *out << definition.name;
}

// What a trigger inserts: a key of its own, and the other columns as they come.
std::string NewValues() {
  std::string values;
  for (const std::string& name : NamesOf(kColumns)) values += name == "id" ? "NULL" : ", NEW." + name;
  return values;
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
                                Replaced(Replaced(WithTypes(kColumns, "ANY"), "id ANY", "id INTEGER PRIMARY KEY"),
                                         "date_time ANY", "date_time TEXT"),
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
       store.Execute("CREATE TRIGGER into_samples INSTEAD OF INSERT ON NetworkData BEGIN INSERT INTO Samples SELECT " +
                     NewValues() + "; END");
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

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
