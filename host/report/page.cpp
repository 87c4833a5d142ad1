#include "host/report/page.h"

#include <google/protobuf/descriptor.h>

#include <map>
#include <memory>
#include <stdexcept>
#include <string_view>
#include <utility>
#include <vector>

#include "host/contract_comments.h"
#include "host/report/embedded.h"
#include "host/report/page_json.h"
#include "host/report/record_table.h"
#include "host/utc_time.h"
#include "host/version.h"
#include "host/views/record_layout.h"
#include "performance_samples_upload.pb.h"

namespace zt::telemetry::host {
namespace {

using google::protobuf::Descriptor;
using Upload = contract::upload::log::PcLogPerformanceSamplesAsCDM;

constexpr std::string_view kDataPlace = "{{data}}";
constexpr int kDataFormat = 1;

// The sections of all record types that are there, in the order of their layouts.
class PageTables {
 public:
  explicit PageTables(const std::vector<DatedRecord>& records) {
    for (const DatedRecord& record : records) types_.try_emplace(record.record->GetDescriptor(), types_.size());
    for (const auto& [type, place] : types_) {
      for (const Section& section : LayoutOf(*type).sections) {
        tables_.emplace_back(type, std::make_unique<RecordTable>(*type, section, comments_));
      }
    }
    for (const DatedRecord& record : records) Add(record);
  }

  std::string Json() const {
    std::string json;
    for (const auto& [type, table] : tables_) {
      if (!table->IsEmpty()) json.append(json.empty() ? "" : ",\n").append(table->Json());
    }
    return "[" + json + "]";
  }

  std::vector<std::string> Notices() const {
    std::vector<std::string> notices;
    for (const auto& [type, table] : tables_) {
      if (table->LeftOut() == 0) continue;
      notices.push_back(table->Title() + ": " + std::to_string(table->LeftOut()) +
                        " named figures are left out, since there are too many names");
    }
    return notices;
  }

 private:
  void Add(const DatedRecord& record) {
    for (const auto& [type, table] : tables_) {
      if (type == record.record->GetDescriptor()) {
        table->Add(*record.record);
      } else {
        table->AddOther();
      }
    }
  }

  ContractComments comments_;
  std::map<const Descriptor*, std::size_t> types_;
  std::vector<std::pair<const Descriptor*, std::unique_ptr<RecordTable>>> tables_;
};

std::string SamplesJson(const DatedRecord& record) {
  const auto* const upload = dynamic_cast<const Upload*>(record.record.get());
  return upload != nullptr && upload->has_sample_points_actual() ? std::to_string(upload->sample_points_actual())
                                                                 : "null";
}

std::string RecordsJson(const std::vector<DatedRecord>& records) {
  std::vector<std::string> times;
  std::vector<std::string> kinds;
  std::vector<std::string> samples;
  for (const DatedRecord& record : records) {
    times.push_back(std::to_string(record.time.time_since_epoch().count()));
    kinds.push_back(std::to_string(static_cast<int>(record.kind)));
    samples.push_back(SamplesJson(record));
  }
  return R"({"times":)" + PageValues(times) + R"(,"kinds":)" + PageValues(kinds) + R"(,"samples":)" +
         PageValues(samples) + "}";
}

}  // namespace

std::string PageData(const MachineRecords& machine, const std::string& name) {
  const PageTables tables(machine.records);
  std::vector<std::string> notices = machine.notices;
  for (std::string& notice : tables.Notices()) notices.push_back(std::move(notice));
  return R"({"format":)" + std::to_string(kDataFormat) + R"(,"program":)" + PageText(ProgramAndVersion()) +
         R"(,"machine":{"name":)" + PageText(name) + R"(,"serial":)" + PageText(machine.serial) + R"(},"notices":)" +
         PageTexts(notices) + ",\n" + R"("records":)" + RecordsJson(machine.records) + ",\n" + R"("tables":)" +
         tables.Json() + "}";
}

std::string ReportPage(const MachineRecords& machine, const std::string& name) {
  const std::string_view page = EmbeddedPage();
  const std::size_t place = page.find(kDataPlace);
  if (place == std::string_view::npos) throw std::logic_error("the page has no place for its data");
  return std::string(page.substr(0, place)) + PageData(machine, name) +
         std::string(page.substr(place + kDataPlace.size()));
}

}  // namespace zt::telemetry::host
