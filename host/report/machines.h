#pragma once

#include <google/protobuf/message.h>

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/report/record_identity.h"

namespace zt::telemetry::host {

/// A record with its place in time.
struct DatedRecord {
  std::unique_ptr<google::protobuf::Message> record;
  RecordKind kind = RecordKind::kLive;
  std::chrono::sys_seconds time;  // by the machine's wall clock
};

/// All records of one machine, by time.
struct MachineRecords {
  std::string serial;  // empty where no record names one
  std::vector<DatedRecord> records;
  /// What is to be told about them. UTF-8.
  std::vector<std::string> notices;
};

/// Sorts records, in the order in which they were handed over, by the machines that they name. A stored record, which
/// names none, is the machine's whose record stands behind it, else of the one before it. A serial number that had no
/// room is taken for the one machine that it is the beginning of. The hours of hourly records, which are UTC, are moved
/// by what the stored record nearest in time tells of the machine's zone. A record without a readable time is told of,
/// and left out; one that is there twice counts once.
std::vector<MachineRecords> ByMachine(std::vector<std::unique_ptr<google::protobuf::Message>> records);

/// Takes away what is before `from` or, where given, not before `to`.
void Narrow(MachineRecords& machine, const std::optional<std::chrono::sys_seconds>& from,
            const std::optional<std::chrono::sys_seconds>& to);

}  // namespace zt::telemetry::host
