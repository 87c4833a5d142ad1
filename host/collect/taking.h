#pragma once

#include <filesystem>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "host/collect/sample_copy.h"
#include "host/command.h"
#include "host/outbox/outbox.h"

namespace zt::telemetry::host {

/// How a collection takes stored samples: it works on a copy, its records are made safe, and then the samples that they
/// hold are deleted, and no others. Wherever the program ends in between, each sample is in the database or in one
/// record that counts:
///
/// 1. The rows that the collection took are written into a file beside the outbox.
/// 2. In one transaction the outbox keeps the records and the name of that file.
/// 3. The rows are deleted from the database, in one transaction.
/// 4. The outbox forgets the name, and the file is deleted.
///
/// Between 2 and 4 the next collection goes on from there. Without an outbox what was printed cannot be taken back: a
/// program that ends between output and deletion prints the same hours again the next time.
class Taking {
 public:
  /// Copies `database`; what is in the way of that is told on `err`, which must outlive this object, and there is no
  /// copy then. Where an outbox is named, finishes what an earlier collection has left first.
  Taking(const CollectCommand& command, std::filesystem::path database, std::ostream& err);

  /// The folder for the collection to work in.
  const std::filesystem::path& Folder() const { return copy_->Folder(); }

  /// Makes the hand-overs safe (steps 1 and 2), and tells on `out` how many there were. Throws `DatabaseError` where
  /// that cannot be: then nothing is taken.
  void KeepInOutbox(std::vector<HandOver> hand_overs, std::ostream& out);

  /// The records are safe: deletes the samples (steps 3 and 4). False when that, or the reading of the samples, has
  /// failed, which is told.
  bool Take();

  /// Holds the outbox to its limits, and tells what was deleted for that.
  void HoldToLimits(const OutboxLimits& limits);

 private:
  void FinishEarlier();
  void RemoveLeftOvers() const;
  std::int64_t KeepTaken(const std::vector<HandOver>& hand_overs, const std::filesystem::path& file) const;
  std::filesystem::path InOutbox(const std::string& file) const;

  bool takes_samples_;
  std::filesystem::path database_;
  std::ostream& err_;
  std::optional<Outbox> outbox_;
  std::optional<CollectingLock> lock_;
  std::optional<SampleCopy> copy_;
  std::optional<TakenSamples> taken_;  // of this collection
};

}  // namespace zt::telemetry::host
