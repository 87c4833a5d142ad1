#pragma once

#include <google/protobuf/message.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace zt::telemetry::host {

/// What was read for a report, in the order in which it was handed over.
struct RecordInput {
  std::vector<std::unique_ptr<google::protobuf::Message>> records;
  /// What could not be read: where it stands, what was wrong with it, and what was expected. UTF-8.
  std::vector<std::string> problems;
  /// Hand-overs that are texts, which hold no figures.
  std::int64_t texts = 0;
};

/// Adds the records of `file` to `input`: hand-overs as lines of JSON, as `collect --format json` prints them, or
/// upload records in protobuf's form, each behind its length, as `outbox export --format protobuf` writes them.
/// Whichever it is is seen from the file's beginning. Throws `Failure` with wrong usage for a file that cannot be read.
void ReadRecordFile(const std::filesystem::path& file, RecordInput& input);

/// Adds the hand-overs of an outbox that count. Throws `Failure` with wrong usage where there is no outbox.
void ReadOutbox(const std::filesystem::path& folder, RecordInput& input);

}  // namespace zt::telemetry::host
