// What leaves the machine, and what does not, as the configuration says it.
#include <gmock/gmock.h>

#include <map>
#include <set>
#include <system_error>

#include "host/consent/consent.h"
#include "host/consent/keyed_hash.h"
#include "host/failure.h"
#include "support/seed_database.h"
#include "support/temporary_folder.h"
#include "tests/host/consent/canary_machine.h"
#include "tests/host/program_run.h"

namespace zt::telemetry::host {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

// The program over a machine of canaries.
class HeldBackTest : public testing::Test {
 protected:
  HeldBackTest() {
    fs::create_directories(folder_.Path() / "d");
    WriteFile(folder_.Path() / "machine.json", machine_.Profile());
  }

  void Configure(const std::string& text) const { WriteFile(folder_.Path() / "host.toml", text); }

  void ConfigureAll(const std::string& treatment, const HashKey& key = NewKey()) const {
    std::string text = "[redact]\nkey = \"" + KeyText(key) + "\"\n";
    for (const std::string_view name : kIdentityNames) text.append(name).append(" = \"" + treatment + "\"\n");
    Configure(text);
  }

  ProgramRun Run(const std::string& command, std::vector<std::string> options = {}) const {
    options.insert(options.begin(),
                   {command, "--machine", folder_.File("machine.json"), "--config", folder_.File("host.toml")});
    if (command != "network") options.insert(options.end(), {"--database-dir", folder_.File("d")});
    return RunProgram(options);
  }

  ProgramRun Outbox(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), "outbox");
    arguments.insert(arguments.end(), {"--outbox", folder_.File("o"), "--config", folder_.File("host.toml")});
    return RunProgram(arguments);
  }

  std::vector<json> Looked() const { return JsonLinesOf(Run("look", {"--format", "json"}).out); }

  // Runs everything that shows, writes or logs, and gathers what each leaves behind, by its name.
  std::map<std::string, std::string> Traces() {
    std::map<std::string, std::string> traces;
    const std::vector<std::string> log = {"--log-level", "verbose", "--log-file", folder_.File("host.log")};
    const auto keep = [&](const std::string& name, const ProgramRun& run) { traces[name] = run.out + run.err; };
    const auto run = [&](const std::string& command, std::vector<std::string> options) {
      options.insert(options.end(), log.begin(), log.end());
      return Run(command, options);
    };
    Collect(log);
    {
      // Who else has the file open keeps its journal from being brought in.
      const OpenedDatabase reader(folder_.Path() / "o" / "outbox.db");
      EXPECT_GT(reader.Number("SELECT COUNT(*) FROM hand_overs"), 0);
      Collect(log);
      EXPECT_GT(fs::file_size(folder_.Path() / "o" / "outbox.db-wal"), 0U);
      AddFiles(folder_.Path() / "o", traces);
    }
    machine_.AddSamples(folder_.File("d/"));
    keep("look as text", run("look", {"--queries", folder_.File("queries.txt")}));
    keep("look as JSON", run("look", {"--format", "json"}));
    keep("network as text", run("network", {}));
    keep("network as JSON", run("network", {"--format", "json"}));
    keep("doctor as text", run("doctor", {}));
    keep("doctor as JSON", run("doctor", {"--format", "json"}));
    keep("collect as text", run("collect", {"--event", "51", "--event", "50"}));
    keep("list", Outbox({"list", "--all"}));
    for (const char* id : {"1", "2", "3", "4"}) keep(std::string("show ") + id, Outbox({"show", id}));
    keep("JSON export", Outbox({"export", "--all"}));
    keep("protobuf export", Outbox({"export", "--all", "--format", "protobuf"}));
    traces["log"] = ReadFile(folder_.Path() / "host.log");
    traces["queries"] = ReadFile(folder_.Path() / "queries.txt");
    AddLeftOvers(traces);
    return traces;
  }

  zt::tests::TemporaryFolder folder_;
  zt::tests::CanaryMachine machine_;

 private:
  void Collect(const std::vector<std::string>& log) {
    machine_.AddSamples(folder_.File("d/"));
    std::vector<std::string> options = {"--outbox", folder_.File("o")};
    options.insert(options.end(), log.begin(), log.end());
    const ProgramRun run = Run("collect", options);
    EXPECT_EQ(run.exit_code, kExitDone) << run.err;
    EXPECT_THAT(run.out, HasSubstr("made of 2 stored samples"));
  }

  static void AddFiles(const fs::path& folder, std::map<std::string, std::string>& traces) {
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
      if (entry.is_regular_file()) traces[ToText(entry.path().filename())] = ReadFile(entry.path());
    }
  }

  // Folders that the program has made for itself and left; those of other tests come and go.
  static void AddLeftOvers(std::map<std::string, std::string>& traces) {
    std::error_code gone;
    for (const auto& entry : fs::directory_iterator(fs::temp_directory_path())) {
      if (!ToText(entry.path().filename()).starts_with("zt-telemetry-host.")) continue;
      for (fs::recursive_directory_iterator file(entry.path(), gone), end; !gone && file != end; file.increment(gone)) {
        traces[ToText(file->path())] = ReadFile(file->path());
      }
    }
  }
};

TEST_F(HeldBackTest, WithEverythingHashedNoCanaryIsFoundAnywhere) {
  ConfigureAll("hash");
  std::map<std::string, std::string> traces = Traces();
  for (const auto& [name, trace] : traces) EXPECT_THAT(machine_.FoundIn(trace), IsEmpty()) << name;
  for (const char* name : {"outbox.db", "outbox.db-wal", "log", "queries", "list", "protobuf export"}) {
    EXPECT_NE(traces[name], "") << name << " holds nothing at all";
  }
}

TEST_F(HeldBackTest, WithEverythingDroppedNoCanaryIsFoundAnywhere) {
  ConfigureAll("drop");
  for (const auto& [name, trace] : Traces()) EXPECT_THAT(machine_.FoundIn(trace), IsEmpty()) << name;
}

TEST_F(HeldBackTest, WithoutAConfigurationTheSameSearchFindsThem) {
  Configure("");
  std::map<std::string, std::string> traces = Traces();
  const std::set<std::string> in_records = {"machine",
                                            "battery",
                                            "battery 2",
                                            "tracking",
                                            "tracking 2",
                                            "graphics card",
                                            "drive",
                                            "drive of the library",
                                            "process",
                                            "process 2",
                                            "process 3",
                                            "NPU",
                                            "device",
                                            "sampled interface",
                                            "sampled Wi-Fi profile",
                                            "start of a process"};
  for (const char* name : {"look as text", "look as JSON", "JSON export"}) {
    for (const std::string& canary : in_records) {
      // In a table a hash is cut.
      if (name == std::string("look as text") && canary == "sampled Wi-Fi profile") continue;
      EXPECT_THAT(machine_.FoundIn(traces[name]), Contains(canary)) << name;
    }
  }
  for (const char* name : {"outbox.db", "outbox.db-wal", "protobuf export", "list", "show 1", "show 4",
                           "collect as text", "doctor as text", "doctor as JSON"}) {
    EXPECT_THAT(machine_.FoundIn(traces[name]), Contains("machine")) << name;
  }
  for (const char* name : {"network as text", "network as JSON"}) {
    EXPECT_THAT(machine_.FoundIn(traces[name]),
                testing::IsSupersetOf({"Wi-Fi profile", "Wi-Fi profile 2", "name of the adapter", "connection"}))
        << name;
  }
  EXPECT_THAT(machine_.FoundIn(traces["network as JSON"]), testing::IsSupersetOf({"MAC address", "adapter", "device"}));
  EXPECT_THAT(machine_.FoundIn(traces["log"]), Contains("Wi-Fi profile 2"));
}

TEST_F(HeldBackTest, AMessageOfAPluginThatNobodyKnowsIsInNoLogAndInNoComplaint) {
  Configure("[sections]\nfans = false\n");
  const auto run = [&](const char* event) {
    return RunProgram({"collect", "--machine", "bare", "--plugin", ZT_SCRIPTED_PLUGIN, "--event", event, "--config",
                       folder_.File("host.toml"), "--log-level", "verbose"});
  };
  EXPECT_THAT(run("1").err, AllOf(HasSubstr("event 1 failed: [left out] (kind 5, code -7)"),
                                  HasSubstr("ERROR [Scripted::Start:12] [left out]\n"), Not(HasSubstr("severity"))));
  EXPECT_THAT(run("4").err, Not(HasSubstr("nonsense")));
}

TEST_F(HeldBackTest, ATextOfWhichNobodyKnowsWhatIsInItIsHeldBackAndCounted) {
  Configure("[sections]\nfans = false\n");
  const ProgramRun run = RunProgram({"collect", "--machine", "bare", "--plugin", ZT_SCRIPTED_PLUGIN, "--event", "6",
                                     "--config", folder_.File("host.toml")});
  EXPECT_EQ(run.exit_code, kExitDone);
  EXPECT_EQ(run.out, "");
  EXPECT_THAT(run.err, HasSubstr("held back as the configuration says: 1 hand-overs"));
}

TEST_F(HeldBackTest, HashesAreTheSameInEveryRunUnderOneKeyAndOthersUnderAnother) {
  const HashKey key = NewKey();
  machine_.AddSamples(folder_.File("d/"));
  ConfigureAll("hash", key);
  const std::vector<json> first = Looked();
  const std::vector<json> again = Looked();
  ASSERT_THAT(first, SizeIs(4));
  const auto interface_of = [](const std::vector<json>& lines) {
    return lines[1]["record"]["hwInfo"]["networkInfo"]["interfacesInfo"][0]["deviceID"];
  };
  EXPECT_EQ(interface_of(first), KeyedHash(key, machine_.Canary("sampled interface")));
  EXPECT_EQ(interface_of(again), interface_of(first));
  EXPECT_EQ(again[3]["record"]["hwInfo"]["batteriesInfo"], first[3]["record"]["hwInfo"]["batteriesInfo"]);
  ConfigureAll("hash");
  const std::vector<json> other = Looked();
  EXPECT_NE(interface_of(other), interface_of(first));
  EXPECT_NE(other[3]["record"]["collectionId"], first[3]["record"]["collectionId"]);
}

TEST_F(HeldBackTest, EqualValuesHaveEqualHashesWhereverTheyStand) {
  const HashKey key = NewKey();
  machine_.AddSamples(folder_.File("d/"));
  ConfigureAll("hash", key);
  const std::vector<json> lines = Looked();
  ASSERT_THAT(lines, SizeIs(4));
  const std::string hash = KeyedHash(key, machine_.Canary("machine"));
  // A card without a serial number has that of the machine.
  EXPECT_EQ(lines[3]["record"]["hwInfo"]["gpusInfo"].back()["graphicsCardSerialNumber"], hash);
  const std::string in_identity = hash.substr(0, 10);
  EXPECT_EQ(lines[0]["record"]["collectionId"], "2026-03-07T12H_" + in_identity + "-TH");
  EXPECT_EQ(lines[1]["record"]["collectionId"], "2026-03-07T12H_" + in_identity + "-NE");
  EXPECT_EQ(lines[3]["record"]["collectionId"], in_identity + "_2026-03-07T12:20:42");
}

// The fields of a section, as JSON has them: of the thermal, the network, the stored and the live record.
struct SectionFields {
  const char* section;
  std::set<std::string> fields;
};

// What stands in the parts of the records: sections all of it.
std::set<std::string> PartsOf(const std::vector<json>& lines) {
  std::set<std::string> parts;
  for (const json& line : lines) {
    for (const auto& [key, value] : line["record"].items()) {
      if (!value.is_object()) continue;
      for (const auto& [part, ignored] : value.items()) parts.insert(part);
    }
  }
  return parts;
}

std::set<std::string> FieldsOf(const std::vector<json>& lines) {
  std::set<std::string> fields = PartsOf(lines);
  for (const json& line : lines) {
    for (const auto& [key, value] : line["record"].items()) {
      if (!value.is_object()) fields.insert(key);
    }
  }
  return fields;
}

TEST_F(HeldBackTest, ASectionThatIsOffIsInNoRecordAndEverythingElseIs) {
  machine_.AddSamples(folder_.File("d/"));
  Configure("");
  const std::vector<json> looked = Looked();
  const std::vector<SectionFields> sections = {
      {"processors", {"cpusInfo"}},
      {"system_board", {"systemBoardInfo"}},
      {"fans", {"fansInfo"}},
      {"batteries",
       {"batteriesInfo", "batteryFurtherCapacityMwh", "batteryFullChargeCapacityMwh", "batteryChargeRateMw",
        "batteryRemainingCapacityPercent"}},
      {"device_state", {"deviceState", "deviceMode"}},
      {"memory", {"systemMemoryInfo", "memoryClockMhz"}},
      {"graphics_cards", {"gpusInfo"}},
      {"npus", {"npusInfo"}},
      {"drives", {"storageDrivesInfo"}},
      {"network", {"networkInfo"}},
      {"processes", {"resourceIntensiveProcessesInfo"}},
      {"session", {"operatingSessionInfo"}}};
  ASSERT_EQ(sections.size(), kSectionNames.size());
  // A source that is new here has no switch yet: it is held back wherever anything is.
  std::set<std::string> without_switch = PartsOf(looked);
  for (const SectionFields& section : sections) {
    for (const std::string& field : section.fields) without_switch.erase(field);
  }
  std::set<std::string> with_switch = FieldsOf(looked);
  for (const std::string& field : without_switch) with_switch.erase(field);
  for (const auto& [section, fields] : sections) {
    std::set<std::string> expected = with_switch;
    for (const std::string& field : fields) EXPECT_EQ(expected.erase(field), 1U) << field;
    Configure(std::string("[sections]\n") + section + " = false\n");
    EXPECT_EQ(FieldsOf(Looked()), expected) << section;
  }
}

TEST_F(HeldBackTest, TheSamplesOfARecordThatIsHeldBackAreTakenAndNotKept) {
  machine_.AddSamples(folder_.File("d/"));
  Configure("[sections]\nnetwork = false\n");
  const ProgramRun run = Run("collect", {"--outbox", folder_.File("o")});
  EXPECT_EQ(run.exit_code, kExitDone) << run.err;
  EXPECT_THAT(run.out, HasSubstr("kept 3 hand-overs"));
  EXPECT_THAT(run.err, HasSubstr("held back as the configuration says: 1 hand-overs"));
  EXPECT_THAT(Outbox({"list"}).out, AllOf(HasSubstr("-TH"), Not(HasSubstr("-NE"))));
  const OpenedDatabase database(folder_.Path() / "d" / "ssm.db");
  EXPECT_EQ(database.Number("SELECT COUNT(*) FROM NetworkData"), 0);
  for (const auto& entry : fs::directory_iterator(folder_.Path() / "o")) {
    EXPECT_THAT(machine_.FoundIn(ReadFile(entry.path())), Not(Contains("sampled interface"))) << entry.path();
  }
}

TEST_F(HeldBackTest, WithAllItsSectionsOffAnHourOfTemperaturesIsNoRecord) {
  machine_.AddSamples(folder_.File("d/"));
  Configure("[sections]\nprocessors = false\nfans = false\nsystem_board = false\n");
  std::vector<std::string> identities;
  for (const json& line : Looked()) identities.push_back(line["record"].value("collectionId", "stored"));
  EXPECT_THAT(identities, ElementsAre(testing::EndsWith("-NE"), "stored", testing::HasSubstr("_2026-03-07T12:20:42")));
}

TEST_F(HeldBackTest, CopiesOfSamplesThatAKilledProgramHasLeftAreRemovedADayLater) {
  const fs::path old = fs::temp_directory_path() / ("zt-telemetry-host." + machine_.Canary("machine"));
  const fs::path fresh = fs::temp_directory_path() / ("zt-telemetry-host." + machine_.Canary("battery"));
  for (const fs::path& folder : {old, fresh}) {
    fs::create_directory(folder);
    WriteFile(folder / "first.db", "samples");
  }
  fs::last_write_time(old / "first.db", fs::file_time_type::clock::now() - std::chrono::hours(25));
  Configure("");
  Looked();
  EXPECT_FALSE(fs::exists(old));
  EXPECT_TRUE(fs::exists(fresh));
  fs::remove_all(fresh);
}

TEST_F(HeldBackTest, NetworkIsRefusedWhereItsSectionIsOff) {
  Configure("[sections]\nnetwork = false\n");
  const ProgramRun run = Run("network");
  EXPECT_EQ(run.exit_code, kExitWrongUsage);
  EXPECT_EQ(run.out, "");
  EXPECT_THAT(run.err, HasSubstr("the configuration switches this section off (sections.network)"));
}

TEST_F(HeldBackTest, TheDoctorTellsStatesAndNoFiguresOfASectionThatIsOff) {
  Configure("[sections]\nbatteries = false\n");
  for (const json& line : JsonLinesOf(Run("doctor", {"--format", "json"}).out)) {
    if (line["source"] != "Batteries") continue;
    EXPECT_EQ(line["state"], "present");
    EXPECT_THAT(line["figures"], IsEmpty());
  }
}

}  // namespace
}  // namespace zt::telemetry::host
