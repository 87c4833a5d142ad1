#pragma once

#include <memory>
#include <ostream>

#include "host/command.h"
#include "host/inspection/source_report.h"

namespace zt::telemetry::host {

/// A way to show what an inspection finds.
class ReportView {
 public:
  virtual ~ReportView() = default;

  /// Called once for each source, as soon as it has answered.
  virtual void Show(const inspection::SourceReport& report) = 0;
  /// Called after the last source.
  virtual void Finish() = 0;
};

/// Text: a line for each source, then the figures, then a line that counts. JSON: one object a line,
/// {"source":"…","state":"present"|"absent"|"failed","remark":"…","time_ms":…,"figures":{…}}, the figures as the upload
/// record in protobuf's default mapping. OpenMetrics: whether each source is there and whether it failed, and the time
/// it took. `stream` must outlive the view.
std::unique_ptr<ReportView> MakeReportView(OutputFormat format, std::ostream& stream);

}  // namespace zt::telemetry::host
