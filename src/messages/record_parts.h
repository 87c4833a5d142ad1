#pragma once

#include <google/protobuf/repeated_field.h>

#include "performance_samples_upload.pb.h"

/// The parts of a record, made such that the record stays whole when there is no memory for one.
namespace zt::telemetry::collector::performancesamples {

/// A new entry at the end of a list. The list grows before the entry is made: protobuf makes the entry first and,
/// should there be no memory for the list then, loses it.
template <typename Entry>
Entry& AddEntry(google::protobuf::RepeatedPtrField<Entry>& list) {
  list.Reserve(list.size() + 1);
  return *list.Add();
}

/// The section that `open` (a record's `mutable_...`) gives, made where there is none; `clear` is that section's own.
/// protobuf says of a section that it is there before it makes it: were that left so, the next look at it, when the
/// record is sent, would end the process.
template <typename Record, typename Section>
Section& OpenSection(Record& record, Section* (Record::*open)(), void (Record::*clear)()) {
  try {
    return *(record.*open)();
  } catch (...) {
    (record.*clear)();
    throw;
  }
}

/// The section of the hardware.
inline contract::upload::log::PcLogPerformanceSamplesAsCDM_HwInfo& OpenHardware(
    contract::upload::log::PcLogPerformanceSamplesAsCDM& record) {
  using Record = contract::upload::log::PcLogPerformanceSamplesAsCDM;
  return OpenSection(record, &Record::mutable_hw_info, &Record::clear_hw_info);
}

}  // namespace zt::telemetry::collector::performancesamples
