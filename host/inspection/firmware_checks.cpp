#include "host/inspection/firmware_checks.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>

#include "host/inspection/failure_text.h"
#include "messages/perf_messages.h"
#include "messages/thermal_reply.h"
#include "zt/shared/smbios/smbios_info.h"

namespace zt::telemetry::host::inspection {
namespace {

using samples::PerfMessages;

// What a machine of another maker answers: no such command, object, namespace, class.
constexpr std::array<std::uint32_t, 4> kNoInterface = {1, 0x80041002, 0x8004100E, 0x80041010};

// A collection takes the same text for a table that cannot be read and for one without a serial number.
Answer AskSerialNumber(samples::Clients&) {
  const shared::smbios::SMBiosInfo table(nullptr);
  if (table.GetReadError() != 0) return FailedWith("the firmware's table cannot be read", table.GetReadError());
  if (!table.GetTypeSysInfo().serial_number) return {SourceState::kAbsent, "the firmware's table has none"};
  return {SourceState::kPresent, PerfMessages::GetSN()};
}

// Reaches the firmware query that the base offers to builders.
class FirmwareReadings : public PerfMessages {
 public:
  explicit FirmwareReadings(samples::Clients& clients) : PerfMessages(clients.Wmi(), clients.Bios()) {}
  void PopulateStorageAndUploadProtos() override {}

  Answer Ask() {
    samples::ThermalReply reply{};
    const std::uint32_t status = GetThermalDataFromPrivateBiosWmi(samples::kThermalReadings, reply.data());
    if (std::find(kNoInterface.begin(), kNoInterface.end(), status) != kNoInterface.end()) {
      return {SourceState::kAbsent, "no firmware interface that tells them (status " + StatusText(status) + ")"};
    }
    if (status != 0) {
      return {SourceState::kFailed, "the firmware's interface answers with status " + StatusText(status)};
    }
    const std::uint8_t count = reply[samples::kReadingCount];
    return {SourceState::kPresent, std::to_string(count) + (count == 1 ? " reading" : " readings")};
  }
};

constexpr std::array kFirmwareChecks = {
    Check{"Serial number", AskSerialNumber},
    Check{"Firmware temperatures", [](samples::Clients& clients) { return FirmwareReadings(clients).Ask(); }},
};

}  // namespace

std::span<const Check> FirmwareChecks() {
  return kFirmwareChecks;
}

}  // namespace zt::telemetry::host::inspection
