#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace zt::endurance {

/// What became of the samples of one table. They are known by their numbers, which their writer gives in turn, from 1
/// on.
class SampleAccount {
 public:
  /// A cycle sent, of each hour, so many samples; then exactly `deleted` were taken out of the table. Those that it can
  /// have sent are the earliest that were there: the summary reads all of one moment, and the writer only adds.
  /// `hour_of`: the hour of a sample.
  template <typename HourOf>
  void AddCycle(const std::map<std::string, std::int64_t>& sent_by_hour, const std::vector<std::int64_t>& deleted,
                const HourOf& hour_of) {
    std::int64_t sent = 0;
    for (const auto& [hour, samples] : sent_by_hour) sent += samples;
    std::map<std::string, std::int64_t> expected;
    std::set<std::int64_t> of_cycle;
    for (std::int64_t sample = 1; sent > 0; ++sample) {
      if (deleted_.contains(sample)) continue;
      of_cycle.insert(sample);
      ++times_sent_[sample];
      ++expected[hour_of(sample)];
      --sent;
    }
    if (expected != sent_by_hour) ++wrong_hours_;
    for (const std::int64_t sample : deleted) {
      if (!deleted_.insert(sample).second) ++deleted_twice_;
      if (!times_sent_.contains(sample)) lost_.push_back(sample);
    }
    last_sent_ = of_cycle;
  }

  /// The samples that the last cycle sent.
  const std::set<std::int64_t>& LastSent() const { return last_sent_; }

  std::int64_t Sent() const { return static_cast<std::int64_t>(times_sent_.size()); }
  /// How often a sample was sent that had been sent before.
  std::int64_t SentAgain() const {
    std::int64_t again = 0;
    for (const auto& [sample, times] : times_sent_) again += times - 1;
    return again;
  }
  /// Samples that were deleted without having been sent, in the order in which they went.
  const std::vector<std::int64_t>& Lost() const { return lost_; }
  bool IsDeleted(std::int64_t sample) const { return deleted_.contains(sample); }
  bool IsSent(std::int64_t sample) const { return times_sent_.contains(sample); }
  /// Cycles whose records did not have the samples of their hours.
  std::int64_t WrongHours() const { return wrong_hours_; }
  std::int64_t DeletedTwice() const { return deleted_twice_; }

 private:
  std::map<std::int64_t, std::int64_t> times_sent_;
  std::set<std::int64_t> deleted_;
  std::vector<std::int64_t> lost_;
  std::set<std::int64_t> last_sent_;
  std::int64_t wrong_hours_ = 0;
  std::int64_t deleted_twice_ = 0;
};

}  // namespace zt::endurance
