#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "host/inspection/diagnoses.h"
#include "host/inspection/inspect_sources.h"

// Sources that the doctor knows nothing special of.
namespace zt::telemetry::host::inspection {
namespace {

using samples::Clients;
using samples::PerfMessages;
using samples::Source;
using testing::Contains;
using testing::SizeIs;

constexpr float kLoad = 17;

class FillingBuilder : public PerfMessages {
 public:
  void PopulateStorageAndUploadProtos() override {
    static_cdm_->mutable_hw_info()->add_cpus_info()->set_utilization_percent(kLoad);
  }
};

// Leaves a section behind that holds nothing.
class IdleBuilder : public PerfMessages {
 public:
  void PopulateStorageAndUploadProtos() override { static_cdm_->mutable_hw_info()->mutable_device_state(); }
};

class FailingBuilder : public FillingBuilder {
 public:
  void PopulateStorageAndUploadProtos() override {
    FillingBuilder::PopulateStorageAndUploadProtos();
    throw std::runtime_error("out of order");
  }
};

template <typename Builder>
SourceReport ReportOf() {
  PerfMessages::Init(nullptr, 0);
  Clients clients;
  const auto make = [](Clients&) -> std::shared_ptr<PerfMessages> { return std::make_shared<Builder>(); };
  std::vector<SourceReport> reports;
  InspectSource({"New source", make}, clients, [&](const SourceReport& report) { reports.push_back(report); });
  EXPECT_THAT(reports, SizeIs(1));
  return reports.at(0);
}

TEST(InspectionTest, ANewSourceThatAddsFiguresIsPresent) {
  const SourceReport report = ReportOf<FillingBuilder>();
  EXPECT_EQ(report.source, "New source");
  EXPECT_EQ(report.state, SourceState::kPresent);
  EXPECT_EQ(report.remark, "");
  EXPECT_EQ(report.figures.hw_info().cpus_info(0).utilization_percent(), kLoad);
}

TEST(InspectionTest, ANewSourceThatAddsNoneIsAbsent) {
  const SourceReport report = ReportOf<IdleBuilder>();
  EXPECT_EQ(report.state, SourceState::kAbsent);
  EXPECT_EQ(report.remark, "no figures");
  EXPECT_EQ(report.figures.ByteSizeLong(), 0U);
}

TEST(InspectionTest, ANewSourceThatThrowsIsFailedInItsOwnWordsAndKeepsItsFigures) {
  const SourceReport report = ReportOf<FailingBuilder>();
  EXPECT_EQ(report.state, SourceState::kFailed);
  EXPECT_EQ(report.remark, "out of order");
  EXPECT_THAT(report.figures.hw_info().cpus_info(), SizeIs(1));
}

// By their names: one that no source bears would never be made.
TEST(InspectionTest, EachDiagnosisIsOfASourceOfTheCollector) {
  std::vector<std::string> names;
  for (const Source& source : samples::Sources()) names.emplace_back(source.name);
  for (const Diagnosis& diagnosis : Diagnoses()) EXPECT_THAT(names, Contains(diagnosis.source));
}

}  // namespace
}  // namespace zt::telemetry::host::inspection
