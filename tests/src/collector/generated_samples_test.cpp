#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <random>

#include "stored_samples_fixture.h"

// Properties of the records that any stored samples give.
namespace zt::telemetry::collector::performancesamples {
namespace {

using testing::SizeIs;
using tests::Literals;
using tests::SampleStore;

// The days of several hosts: their rows in any order, some interfaces and some minutes missing.
class GeneratedSamplesTest : public StoredSamplesTest, public testing::WithParamInterface<unsigned> {
 protected:
  struct Sample {
    bool thermal;
    std::string time;
    Literals values;
  };

  std::vector<Sample> Generate() {
    std::mt19937 random(GetParam());
    std::vector<Sample> samples;
    for (int hour = 0; hour < 30; ++hour) {
      for (int minute = 0; minute < 60; minute += 1 + static_cast<int>(random() % 3)) {
        char time[64];
        std::snprintf(time, sizeof time, "2026-03-%02dT%02d:%02d:%02d.000Z", 1 + hour / 24, hour % 24, minute,
                      static_cast<int>(random() % 60));
        samples.push_back({true, time, {{"cpu_temp", std::to_string(random() % 90)}}});
        for (unsigned interface = random() % 4; interface > 0; --interface) {
          samples.push_back({false,
                             time,
                             {{"interface_device_id", "'{" + std::to_string(interface) + "}'"},
                              {"bytes_received", std::to_string(random() % 100000)}}});
        }
      }
    }
    return samples;
  }

  SampleStore Store(const std::vector<Sample>& samples) {
    auto store = MakeStore();
    store.Execute("BEGIN");
    for (const Sample& sample : samples) {
      if (sample.thermal) {
        store.AddThermal(sample.time, sample.values);
      } else {
        store.AddNetwork(sample.time, sample.values);
      }
    }
    store.Execute("COMMIT");
    return store;
  }

  std::vector<std::string> SentTexts() const {
    std::vector<std::string> texts;
    for (const auto& record : sink_->sent) texts.push_back(record.SerializeAsString());
    return texts;
  }
};

TEST_P(GeneratedSamplesTest, EverySampleIsCountedOnceInTheRecords) {
  const auto samples = Generate();
  const auto thermal = static_cast<std::uint64_t>(
      std::count_if(samples.begin(), samples.end(), [](const auto& s) { return s.thermal; }));
  const auto store = Store(samples);
  Cycle();
  EXPECT_EQ(SamplesOf(Thermal()), thermal);
  EXPECT_EQ(SamplesOf(Network()), samples.size() - thermal);
  EXPECT_THAT(Thermal(), SizeIs(30));
}

TEST_P(GeneratedSamplesTest, TheRecordsDoNotDependOnTheOrderOfTheRows) {
  auto samples = Generate();
  auto store = Store(samples);
  Cycle();
  const auto ordered = SentTexts();
  store.Close();
  std::filesystem::remove(folder_.Path() / "ssm.db");
  std::shuffle(samples.begin(), samples.end(), std::mt19937(GetParam()));
  const auto shuffled = Store(samples);
  Cycle();
  EXPECT_EQ(SentTexts(), ordered);
}

INSTANTIATE_TEST_SUITE_P(Seeds, GeneratedSamplesTest, testing::Values(1U, 2U, 3U));

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
