#include <google/protobuf/util/json_util.h>

#include <chrono>
#include <string>

#include "fleet/simulate/fleet_machine.h"
#include "seed_folder.h"

namespace zt::fuzz {

using namespace zt::telemetry;

void AddFleetSeeds(SeedFolder& seeds) {
  const auto begin = std::chrono::sys_days(std::chrono::year{2026} / 3 / 7) + std::chrono::hours(8);
  fleet::FleetMachine machine(fleet::PlainMachine(0, 1), begin);
  std::string delimited;
  std::string lines;
  machine.Send(begin, [&](const fleet::FleetMachine::Upload& record, const fleet::MachineFacts&) {
    constexpr unsigned kBits = 7;
    constexpr unsigned kMore = 0x80;
    const std::string bytes = record.SerializeAsString();
    std::size_t length = bytes.size();
    for (; length >= kMore; length >>= kBits) delimited += static_cast<char>((length & (kMore - 1)) | kMore);
    delimited += static_cast<char>(length);
    delimited += bytes;
    std::string json;
    if (!google::protobuf::util::MessageToJsonString(record, &json).ok()) return;
    lines += R"({"handover":"send","type":")" + std::string(record.GetTypeName()) + R"(","record":)" + json + "}\n";
  });
  seeds.Add("forwarded_input", delimited);
  seeds.Add("forwarded_input", lines);
  seeds.Add("forwarded_input", R"({"handover":"send","type":"text","text":"nothing"})");
}

}  // namespace zt::fuzz
