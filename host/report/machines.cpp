#include "host/report/machines.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <map>
#include <set>
#include <utility>

namespace zt::telemetry::host {
namespace {

using google::protobuf::Message;

namespace chrono = std::chrono;

struct NamedRecord {
  std::unique_ptr<Message> record;
  RecordIdentity identity;
};

std::vector<NamedRecord> Named(std::vector<std::unique_ptr<Message>> records) {
  std::vector<NamedRecord> named;
  named.reserve(records.size());
  for (auto& record : records) {
    RecordIdentity identity = IdentityOf(*record);
    named.push_back({std::move(record), std::move(identity)});
  }
  return named;
}

// The whole serial number that `cut` is the beginning of, where there is exactly one.
std::string WholeSerial(const std::string& cut, const std::set<std::string>& serials) {
  std::string whole;
  for (auto serial = serials.lower_bound(cut); serial != serials.end() && serial->starts_with(cut); ++serial) {
    if (*serial == cut) continue;
    if (!whole.empty()) return cut;
    whole = *serial;
  }
  return whole.empty() ? cut : whole;
}

void CompleteSerials(std::vector<NamedRecord>& records) {
  std::set<std::string> serials;
  for (const NamedRecord& record : records) {
    if (record.identity.kind == RecordKind::kLive) serials.insert(record.identity.serial);
  }
  for (NamedRecord& record : records) {
    if (record.identity.serial_is_cut) record.identity.serial = WholeSerial(record.identity.serial, serials);
  }
}

void NameStoredRecords(std::vector<NamedRecord>& records) {
  const std::string* serial = nullptr;
  const auto name = [&serial](NamedRecord& record) {
    if (record.identity.kind != RecordKind::kStored) {
      serial = &record.identity.serial;
    } else if (record.identity.serial.empty() && serial != nullptr) {
      record.identity.serial = *serial;
    }
  };
  std::for_each(records.rbegin(), records.rend(), name);
  serial = nullptr;
  std::for_each(records.begin(), records.end(), name);
}

// The machine's zone at times of which stored records tell it.
class Zones {
 public:
  explicit Zones(const std::vector<NamedRecord>& records) {
    for (const NamedRecord& record : records) {
      if (record.identity.time && record.identity.zone) {
        by_utc_[*record.identity.time - *record.identity.zone] = *record.identity.zone;
      }
    }
  }

  // Nothing when no record tells the zone.
  std::optional<chrono::minutes> At(chrono::sys_seconds utc) const {
    if (by_utc_.empty()) return std::nullopt;
    auto after = by_utc_.lower_bound(utc);
    if (after == by_utc_.begin()) return after->second;
    const auto before = std::prev(after);
    return after == by_utc_.end() || utc - before->first <= after->first - utc ? before->second : after->second;
  }

 private:
  std::map<chrono::sys_seconds, chrono::minutes> by_utc_;
};

bool IsHourly(RecordKind kind) {
  return kind == RecordKind::kThermal || kind == RecordKind::kNetwork;
}

std::string CountText(std::size_t count, const std::string& one, const std::string& many) {
  return std::to_string(count) + " " + (count == 1 ? one : many);
}

// Records of one machine, put in order.
class MachineBuilder {
 public:
  MachineBuilder(std::string serial, std::vector<NamedRecord> records) : zones_(records) {
    machine_.serial = std::move(serial);
    for (NamedRecord& record : records) Add(record);
    std::stable_sort(machine_.records.begin(), machine_.records.end(),
                     [](const DatedRecord& one, const DatedRecord& two) { return one.time < two.time; });
    Tell();
  }

  MachineRecords Take() { return std::move(machine_); }

 private:
  void Add(NamedRecord& named) {
    if (!named.identity.time) {
      ++undated_;
      return;
    }
    if (!seen_.insert(std::string(named.record->GetTypeName()) + named.record->SerializePartialAsString()).second) {
      ++twice_;
      return;
    }
    chrono::sys_seconds time = *named.identity.time;
    if (IsHourly(named.identity.kind)) {
      const auto zone = zones_.At(time);
      zone_unknown_ = zone_unknown_ || !zone.has_value();
      time += zone.value_or(chrono::minutes(0));
    }
    machine_.records.push_back({std::move(named.record), named.identity.kind, time});
  }

  void Tell() {
    if (undated_ > 0) {
      machine_.notices.push_back(CountText(undated_, "record is", "records are") +
                                 " left out, having no readable time; expected a time such as "
                                 "2026-03-07T14:00:30.000Z, or an hour in the identity");
    }
    if (twice_ > 0) {
      machine_.notices.push_back(CountText(twice_, "record was", "records were") + " there twice, and counted once");
    }
    if (zone_unknown_) {
      machine_.notices.emplace_back(
          "No record tells the machine's time zone: the hours of hourly records are shown as they are, in UTC");
    }
  }

  Zones zones_;
  MachineRecords machine_;
  std::set<std::string> seen_;
  std::size_t undated_ = 0;
  std::size_t twice_ = 0;
  bool zone_unknown_ = false;
};

}  // namespace

std::vector<MachineRecords> ByMachine(std::vector<std::unique_ptr<Message>> records) {
  std::vector<NamedRecord> named = Named(std::move(records));
  CompleteSerials(named);
  NameStoredRecords(named);
  std::map<std::string, std::vector<NamedRecord>> by_serial;
  for (NamedRecord& record : named) {
    std::string serial = record.identity.serial;
    by_serial[std::move(serial)].push_back(std::move(record));
  }
  std::vector<MachineRecords> machines;
  machines.reserve(by_serial.size());
  for (auto& [serial, of_machine] : by_serial) {
    machines.push_back(MachineBuilder(serial, std::move(of_machine)).Take());
  }
  return machines;
}

void Narrow(MachineRecords& machine, const std::optional<chrono::sys_seconds>& from,
            const std::optional<chrono::sys_seconds>& to) {
  std::erase_if(machine.records,
                [&](const DatedRecord& record) { return (from && record.time < *from) || (to && record.time >= *to); });
}

}  // namespace zt::telemetry::host
