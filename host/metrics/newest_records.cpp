#include "host/metrics/newest_records.h"

#include <google/protobuf/descriptor.h>

#include <algorithm>
#include <array>
#include <map>
#include <memory>
#include <string>
#include <utility>

#include "device_performance_storage.pb.h"
#include "host/failure.h"
#include "host/metrics/figure_value.h"
#include "host/metrics/metric_plan.h"
#include "host/outbox/kept_record.h"
#include "host/views/record_layout.h"
#include "host/views/record_reader.h"
#include "performance_samples_upload.pb.h"

namespace zt::telemetry::host {
namespace {

using contract::storage::device_performance::AmdPmfSamples;
using contract::upload::log::PcLogPerformanceSamplesAsCDM;
using google::protobuf::Message;

constexpr char kLiveKind[] = "live";
constexpr char kThermalKind[] = "thermal";
constexpr char kNetworkKind[] = "network";
constexpr char kStoredKind[] = "stored";
constexpr std::array kKinds = {kLiveKind, kThermalKind, kNetworkKind, kStoredKind};

constexpr char kRecordLabel[] = "record";
constexpr double kMillisecondsPerSecond = 1000;

// The hourly records are uploads like the live ones; sections that only they have tell them apart.
std::string KindOf(const PcLogPerformanceSamplesAsCDM& upload) {
  const auto& hardware = upload.hw_info();
  if (hardware.has_network_info()) return kNetworkKind;
  const bool thermal =
      hardware.cpus_info_size() > 0 || hardware.fans_info_size() > 0 || hardware.has_system_board_info();
  return thermal ? kThermalKind : kLiveKind;
}

// Empty for what has no figures.
std::string KindOf(const Message& record) {
  if (const auto* const upload = dynamic_cast<const PcLogPerformanceSamplesAsCDM*>(&record)) return KindOf(*upload);
  return record.GetDescriptor() == AmdPmfSamples::descriptor() ? kStoredKind : "";
}

struct Newest {
  KeptHandOver kept;
  std::unique_ptr<Message> record;
};

std::map<std::string, Newest> FindNewest(const Outbox& outbox, Progress& progress) {
  std::map<std::string, Newest> newest;
  std::int64_t looked_at = 0;
  outbox.ForEachNewestFirst([&](const KeptHandOver& kept) {
    progress.Show(++looked_at, "hand-overs looked at");
    if (kept.hand_over.message == kTextMessage) return true;
    std::unique_ptr<Message> record = RecordOf(kept.hand_over);
    if (record == nullptr) {
      throw Failure(kExitFailed,
                    "hand-over " + std::to_string(kept.id) + " cannot be read as a " + kept.hand_over.message);
    }
    const std::string kind = KindOf(*record);
    if (!kind.empty()) newest.try_emplace(kind, Newest{kept, std::move(record)});
    return newest.size() < kKinds.size();
  });
  return newest;
}

// What is told of a record as a whole.
class HeadingMetrics {
 public:
  explicit HeadingMetrics(const ContractComments& comments) {
    const auto& upload = *PcLogPerformanceSamplesAsCDM::descriptor();
    samples_path_ = LayoutOf(upload).samples_path;
    samples_.help = comments.Of(*upload.FindFieldByName(samples_path_));
  }

  void Add(const std::string& kind, const Newest& newest, OpenMetrics& metrics) const {
    const Labels label = {{kRecordLabel, kind}};
    metrics.Add(arrival_, label,
                static_cast<double>(newest.kept.arrived.time_since_epoch().count()) / kMillisecondsPerSecond);
    Labels labels = label;
    const HandOver& hand_over = newest.kept.hand_over;
    if (!hand_over.collection_id.empty()) labels.emplace_back("identity", hand_over.collection_id);
    labels.emplace_back("local_time", hand_over.local_time);
    labels.emplace_back("contract_version", newest.kept.contract_version);
    metrics.Add(info_, labels, 1);
    if (newest.record->GetDescriptor()->FindFieldByName(samples_path_) == nullptr) return;
    if (const auto samples = FigureValue(*newest.record, samples_path_)) metrics.Add(samples_, label, *samples);
  }

  std::vector<MetricFamily> Families() const { return {arrival_, info_, samples_}; }

 private:
  MetricFamily arrival_ = {"zt_record_arrival_timestamp_seconds", "seconds",
                           "When the newest record of this kind was kept: seconds since 1970 in UTC."};
  MetricFamily info_ = {"zt_record_info", "", "The newest record of this kind; always 1."};
  MetricFamily samples_ = {"zt_record_samples", "", ""};
  std::string samples_path_;
};

}  // namespace

void AddNewestRecords(const Outbox& outbox, OpenMetrics& metrics, Progress& progress) {
  const ContractComments comments;
  const HeadingMetrics heading(comments);
  const std::map<std::string, Newest> newest = FindNewest(outbox, progress);
  for (const char* const kind : kKinds) {
    const auto found = newest.find(kind);
    if (found == newest.end()) continue;
    heading.Add(kind, found->second, metrics);
    MetricPlan(*found->second.record->GetDescriptor(), comments).Add(*found->second.record, metrics);
  }
}

std::vector<MetricFamily> RecordMetricFamilies() {
  const ContractComments comments;
  std::vector<MetricFamily> families = HeadingMetrics(comments).Families();
  for (const auto* const type : {PcLogPerformanceSamplesAsCDM::descriptor(), AmdPmfSamples::descriptor()}) {
    const std::vector<MetricFamily> more = MetricPlan(*type, comments).Families();
    families.insert(families.end(), more.begin(), more.end());
  }
  return families;
}

}  // namespace zt::telemetry::host
