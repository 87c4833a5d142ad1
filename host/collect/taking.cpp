#include "host/collect/taking.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include "host/files.h"
#include "host/outbox/kept_record.h"
#include "host/program_environment.h"
#include "host/seed/sample_schema.h"
#include "performance_samples_upload.pb.h"

namespace zt::telemetry::host {
namespace {

namespace fs = std::filesystem;

constexpr int kDeletionPatienceMs = 5000;      // for the writers of samples
constexpr int kCollectionPatienceMs = 60'000;  // for another collection
constexpr char kTakenEnding[] = ".taken.db";
constexpr char kTakenName[] = "taken.db";

// The table and the hour of an hourly record; empty texts for what is none. Its identity may have been cut behind the
// hour: what is in it tells the table.
std::pair<std::string, std::string> HourOf(const HandOver& hand_over) {
  using Upload = contract::upload::log::PcLogPerformanceSamplesAsCDM;
  constexpr std::size_t kHourLength = 13;
  const std::string& id = hand_over.collection_id;
  if (hand_over.message != Upload::descriptor()->full_name() || id.find("H_") != kHourLength) return {};
  const auto record = RecordOf(hand_over);
  const auto* const upload = dynamic_cast<const Upload*>(record.get());
  if (upload == nullptr) return {};
  return {upload->hw_info().has_network_info() ? kNetworkTable : kThermalTable, id.substr(0, kHourLength)};
}

}  // namespace

Taking::Taking(const CollectCommand& command, fs::path database, std::ostream& err)
    : takes_samples_(command.takes_samples), database_(std::move(database)), err_(err) {
  if (command.outbox.has_value()) {
    outbox_.emplace(*command.outbox);
    if (const auto& aside = outbox_->SetAside()) {
      err_ << "the outbox was damaged; it was set aside as " << PathText(*aside) << ", and a new one is begun"
           << std::endl;
    }
    lock_.emplace(*command.outbox, kCollectionPatienceMs);
    FinishEarlier();
  }
  copy_.emplace(database_);
  if (const auto& trouble = copy_->Trouble()) {
    err_ << "the stored samples cannot be read, and stay for another time: " << *trouble << std::endl;
  }
  if (!outbox_.has_value()) return;
  for (const TakenSamples& taken : outbox_->Taken()) {
    if (taken.database == ToText(database_)) copy_->Forget(InOutbox(taken.file));
  }
}

// What cannot be finished now, since a writer holds the database, is left out of the copy.
void Taking::FinishEarlier() {
  for (const TakenSamples& taken : outbox_->Taken()) {
    try {
      DeleteTakenSamples(PathFromText(taken.database), InOutbox(taken.file), kDeletionPatienceMs);
      outbox_->ForgetTaken(taken.file);
    } catch (const DatabaseError& failure) {
      err_ << "samples whose records are kept cannot be deleted yet: " << failure.what() << std::endl;
    }
  }
  RemoveLeftOvers();
}

// A collection that ended before its records were kept has left a file that nobody asks for.
void Taking::RemoveLeftOvers() const {
  const std::vector<TakenSamples> expected = outbox_->Taken();
  for (const auto& entry : fs::directory_iterator(outbox_->Folder())) {
    const std::string name = ToText(entry.path().filename());
    const bool is_expected =
        std::any_of(expected.begin(), expected.end(), [&](const TakenSamples& taken) { return taken.file == name; });
    std::error_code stays;  // until the next time
    if (name.ends_with(kTakenEnding) && !is_expected) fs::remove(entry.path(), stays);
  }
}

fs::path Taking::InOutbox(const std::string& file) const {
  return outbox_->Folder() / fs::path(std::u8string(file.begin(), file.end()));
}

std::int64_t Taking::KeepTaken(const std::vector<HandOver>& hand_overs, const fs::path& file) const {
  for (const HandOver& hand_over : hand_overs) {
    const auto [table, hour] = HourOf(hand_over);
    if (!table.empty()) copy_->Take(table, hour);
  }
  return copy_->KeepTaken(file);
}

void Taking::KeepInOutbox(std::vector<HandOver> hand_overs, std::ostream& out) {
  const std::string file = ToText(copy_->Folder().filename()) + kTakenEnding;
  const std::int64_t samples = takes_samples_ ? KeepTaken(hand_overs, InOutbox(file)) : 0;
  if (samples > 0) {
    taken_ = TakenSamples{file, ToText(database_)};
    const auto digests = DigestsOfHours(InOutbox(file));
    for (HandOver& hand_over : hand_overs) {
      const auto digest = digests.find(HourOf(hand_over));
      if (digest != digests.end()) hand_over.samples = digest->second;
    }
  }
  outbox_->Keep(hand_overs, taken_);
  out << "kept " << hand_overs.size() << " hand-overs in " << PathText(outbox_->Folder()) << ", made of " << samples
      << " stored samples and the machine as it is" << std::endl;
}

bool Taking::Take() {
  const bool readable = !copy_->Trouble().has_value();
  if (!takes_samples_) return readable;
  try {
    const fs::path own_file = copy_->Folder() / kTakenName;
    if (!outbox_.has_value()) {
      if (copy_->KeepTaken(own_file) > 0) DeleteTakenSamples(database_, own_file, kDeletionPatienceMs);
    } else if (taken_.has_value()) {
      DeleteTakenSamples(database_, InOutbox(taken_->file), kDeletionPatienceMs);
      outbox_->ForgetTaken(taken_->file);
      RemoveLeftOvers();
    }
    return readable;
  } catch (const DatabaseError& failure) {
    err_ << "the samples that were sent cannot be deleted: " << failure.what()
         << (outbox_.has_value() ? "; the next collection does it" : "; the next collection sends them again")
         << std::endl;
    return false;
  }
}

// What was just collected is safe: that it takes more room than it should is no failure of the collection.
void Taking::HoldToLimits(const OutboxLimits& limits) {
  if (!outbox_.has_value()) return;
  try {
    const Pruned pruned = outbox_->Prune(limits);
    if (pruned.delivered + pruned.undelivered == 0) return;
    err_ << "the outbox was beyond its limits: " << PrunedText(pruned) << std::endl;
  } catch (const DatabaseError& failure) {
    err_ << "the outbox cannot be held to its limits: " << failure.what() << "; the next collection tries again"
         << std::endl;
  }
}

}  // namespace zt::telemetry::host
