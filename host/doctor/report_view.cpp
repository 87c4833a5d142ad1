#include "host/doctor/report_view.h"

#include <google/protobuf/util/json_util.h>

#include <array>
#include <chrono>
#include <iomanip>
#include <map>
#include <stdexcept>
#include <string>

#include <nlohmann/json.hpp>

#include "host/doctor/source_metrics.h"
#include "host/views/record_text.h"
#include "host/views/text_table.h"

namespace zt::telemetry::host {
namespace {

using inspection::SourceReport;
using inspection::SourceState;

constexpr int kSourceWidth = 23;
constexpr int kStateWidth = 7;
constexpr int kTimeWidth = 8;

const char* StateText(SourceState state) {
  switch (state) {
    case SourceState::kPresent:
      return "present";
    case SourceState::kAbsent:
      return "absent";
    case SourceState::kFailed:
      break;
  }
  return "failed";
}

double Milliseconds(std::chrono::nanoseconds time) {
  return std::chrono::duration<double, std::milli>(time).count();
}

void RequireWritten(const std::ostream& stream) {
  if (!stream) throw std::runtime_error("the output cannot be written");
}

class TextView : public ReportView {
 public:
  explicit TextView(std::ostream& stream) : stream_(stream) {}

  void Show(const SourceReport& report) override {
    stream_ << std::left << std::setw(kSourceWidth) << report.source << std::setw(kStateWidth)
            << StateText(report.state) << std::right << std::setw(kTimeWidth) << std::fixed << std::setprecision(1)
            << Milliseconds(report.time) << " ms";
    if (!report.remark.empty()) stream_ << "  " << Printable(report.remark);
    stream_ << std::endl;
    RequireWritten(stream_);
    figures_.MergeFrom(report.figures);
    ++counts_[report.state];
  }

  void Finish() override {
    stream_ << "\nFIGURES\n" << SectionsText(figures_) << "\n";
    stream_ << counts_[SourceState::kPresent] << " present, " << counts_[SourceState::kAbsent] << " absent, "
            << counts_[SourceState::kFailed] << " failed" << std::endl;
    RequireWritten(stream_);
  }

 private:
  std::ostream& stream_;
  contract::upload::log::PcLogPerformanceSamplesAsCDM figures_;
  std::map<SourceState, int> counts_;
};

class JsonView : public ReportView {
 public:
  explicit JsonView(std::ostream& stream) : stream_(stream) {}

  void Show(const SourceReport& report) override {
    std::string figures;
    const auto status = google::protobuf::util::MessageToJsonString(report.figures, &figures);
    if (!status.ok()) throw std::runtime_error("cannot write the figures as JSON: " + status.ToString());
    const nlohmann::ordered_json line = {{"source", report.source},
                                         {"state", StateText(report.state)},
                                         {"remark", report.remark},
                                         {"time_ms", Milliseconds(report.time)},
                                         {"figures", nlohmann::ordered_json::parse(figures)}};
    stream_ << line.dump(-1, ' ', /*ensure_ascii=*/false, nlohmann::ordered_json::error_handler_t::replace)
            << std::endl;
    RequireWritten(stream_);
  }

  void Finish() override {}

 private:
  std::ostream& stream_;
};

// All of it at the end.
class MetricsOnStream : public ReportView {
 public:
  explicit MetricsOnStream(std::ostream& stream) : stream_(stream) {}

  void Show(const SourceReport& report) override { view_.Show(report); }

  void Finish() override {
    stream_ << metrics_.Text() << std::flush;
    RequireWritten(stream_);
  }

 private:
  std::ostream& stream_;
  OpenMetrics metrics_;
  SourceMetrics view_{metrics_};
};

}  // namespace

std::unique_ptr<ReportView> MakeReportView(OutputFormat format, std::ostream& stream) {
  if (format == OutputFormat::kOpenMetrics) return std::make_unique<MetricsOnStream>(stream);
  if (format == OutputFormat::kJson) return std::make_unique<JsonView>(stream);
  return std::make_unique<TextView>(stream);
}

}  // namespace zt::telemetry::host
