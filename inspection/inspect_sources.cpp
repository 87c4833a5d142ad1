#include "zt/inspection/inspect_sources.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "failed_queries.h"
#include "failure_text.h"
#include "messages/perf_messages.h"
#include "platform/library.h"
#include "platform/nvml_files.h"
#include "platform/power_status.h"
#include "platform/registry.h"
#include "platform/session_clock.h"
#include "platform/session_number.h"
#include "plugin/logger_export.h"
#include "samplers/battery_info_msg.h"
#include "samplers/device_state_info_msg.h"
#include "samplers/gpu/amd_card_info.h"
#include "samplers/gpu/gpu_info_msg.h"
#include "samplers/gpu/intel_card_info.h"
#include "samplers/gpu/nvidia_card_info.h"
#include "samplers/memory_info_msg.h"
#include "samplers/npu_msg.h"
#include "samplers/operating_system_info_msg.h"
#include "samplers/storage_info_msg.h"
#include "zt/shared/battery/zt_batteries.h"
#include "zt/shared/npu/npu_info.h"
#include "zt/shared/smbios/smbios_info.h"

namespace zt::telemetry::inspection {
namespace {

namespace platform = collector::performancesamples::platform;
using collector::performancesamples::AbstractGPUVendor;
using collector::performancesamples::AmdCardInfo;
using collector::performancesamples::BatteryInfoMsg;
using collector::performancesamples::DeviceStateInfoMsg;
using collector::performancesamples::GPUInfoMsg;
using collector::performancesamples::IntelCardInfo;
using collector::performancesamples::MemoryInfoMsg;
using collector::performancesamples::NPUMsg;
using collector::performancesamples::NvidiaCardInfo;
using collector::performancesamples::OperatingSystemInfoMsg;
using collector::performancesamples::PerfMessages;
using collector::performancesamples::StorageInfoMsg;
using collector::performancesamples::types::GraphicCardInfo;

constexpr wchar_t kWmiNamespace[] = LR"(\\.\root\cimv2)";
constexpr int kEventOfInspections = 0;  // no collection's
// What a machine of another maker answers: no such command, object, namespace, class.
constexpr std::array<std::uint32_t, 4> kNoInterface = {1, 0x80041002, 0x8004100E, 0x80041010};

// Where the places of cards are looked up.
constexpr char kPciDevices[] = R"(SYSTEM\CurrentControlSet\Enum\PCI)";

constexpr std::int64_t kNoIntelAdapter = 1;  // the code of the back-end for it

// What asking a source gave.
struct Answer {
  SourceState state = SourceState::kPresent;
  std::string remark;
};

// The clients of one collection.
struct Clients {
  shared::wmi::WMIClient wmi{kWmiNamespace};
  shared::ztbios::PrivateBiosWmi bios;
};

struct Source {
  const char* name;
  Answer (*ask)(Clients& clients);
};

// A builder may leave sections behind that hold nothing.
bool HoldsFigures(const google::protobuf::Message& message) {
  const auto& reflection = *message.GetReflection();
  std::vector<const google::protobuf::FieldDescriptor*> fields;
  reflection.ListFields(message, &fields);
  return std::any_of(fields.begin(), fields.end(), [&](const google::protobuf::FieldDescriptor* field) {
    const bool is_section = !field->is_repeated() && field->message_type() != nullptr;
    return !is_section || HoldsFigures(reflection.GetMessage(message, field));
  });
}

// A builder that adds nothing tells of an absence in `none`.
Answer AskBuilder(PerfMessages& builder, const char* none) {
  builder.PopulateStorageAndUploadProtos();
  if (HoldsFigures(*PerfMessages::static_cdm_)) return {};
  return {SourceState::kAbsent, none};
}

Answer FailedWith(const std::string& what, std::uint32_t status) {
  return {SourceState::kFailed, what + " (status " + StatusText(status) + ")"};
}

// A collection takes the same text for a table that cannot be read and for one without a serial number.
Answer AskSerialNumber(Clients&) {
  const shared::smbios::SMBiosInfo table(nullptr);
  if (table.GetReadError() != 0) return FailedWith("the firmware's table cannot be read", table.GetReadError());
  if (!table.GetTypeSysInfo().serial_number) return {SourceState::kAbsent, "the firmware's table has none"};
  return {SourceState::kPresent, PerfMessages::GetSN()};
}

// A collection leaves a battery out whose driver does not answer.
Answer AskBatteries(Clients&) {
  BatteryInfoMsg builder;
  Answer answer = AskBuilder(builder, "no battery");
  if (!platform::BatteryFlag()) return {SourceState::kFailed, "the system does not tell its power status"};
  const std::uint32_t error = shared::battery::ZTBatteries(true, true, nullptr, nullptr).GetReadError();
  return error != 0 ? FailedWith("a battery does not answer", error) : answer;
}

// A collection takes NPUs that cannot be asked for as none.
Answer AskNpus(Clients&) {
  NPUMsg builder;
  Answer answer = AskBuilder(builder, "no NPU");
  const std::int32_t status = shared::npu::NPUInfo().GetStatus();
  return status != 0 ? FailedWith("the system does not tell all its NPUs", static_cast<std::uint32_t>(status)) : answer;
}

// Reaches the firmware query that the base offers to builders.
class FirmwareReadings : public PerfMessages {
 public:
  explicit FirmwareReadings(Clients& clients) : PerfMessages(&clients.wmi, &clients.bios) {}
  void PopulateStorageAndUploadProtos() override {}

  Answer Ask() {
    constexpr int kGraphicsReadings = 1;
    std::array<std::uint8_t, 128> reply{};
    const std::uint32_t status = GetThermalDataFromPrivateBiosWmi(kGraphicsReadings, reply.data());
    if (std::find(kNoInterface.begin(), kNoInterface.end(), status) != kNoInterface.end()) {
      return {SourceState::kAbsent, "no firmware interface that tells them (status " + StatusText(status) + ")"};
    }
    if (status != 0)
      return {SourceState::kFailed, "the firmware's interface answers with status " + StatusText(status)};
    return {SourceState::kPresent, std::to_string(reply[0]) + (reply[0] == 1 ? " reading" : " readings")};
  }
};

// "2 cards: 744C at bus 3, unnamed at bus 0".
std::string CardsText(const std::vector<GraphicCardInfo>& cards) {
  std::string text = std::to_string(cards.size()) + (cards.size() == 1 ? " card" : " cards");
  for (const GraphicCardInfo& card : cards) {
    text += &card == &cards.front() ? ": " : ", ";
    text +=
        (card.serial_number.empty() ? "unnamed" : card.serial_number) + " at bus " + std::to_string(card.bus_number);
  }
  return text;
}

// The figures of the vendors' cards are those of the graphics cards' builder.
Answer AskVendor(AbstractGPUVendor& vendor) {
  std::vector<GraphicCardInfo> cards;
  const common::Error outcome = vendor.QueryValues(&cards);
  if (outcome.Failed()) return {SourceState::kFailed, ErrorText(outcome)};
  if (cards.empty()) return {SourceState::kAbsent, "no card of this vendor"};
  return {SourceState::kPresent, CardsText(cards)};
}

bool IsNvmlInstalled() {
  const std::vector<std::filesystem::path> files = platform::NvmlFiles();
  return std::any_of(files.begin(), files.end(),
                     [](const auto& file) { return static_cast<bool>(platform::Library::Load(file)); });
}

// A library that lacks what the back-end needs gives the same code as none at all.
Answer AskNvidia(Clients&) {
  NvidiaCardInfo vendor;
  Answer answer = AskVendor(vendor);
  if (answer.state == SourceState::kFailed && !IsNvmlInstalled()) {
    return {SourceState::kAbsent, "NVIDIA's management library is not installed"};
  }
  return answer;
}

Answer AskAmd(Clients&) {
  AmdCardInfo vendor;
  Answer answer = AskVendor(vendor);
  if (!vendor.Library().IsLoaded()) return {SourceState::kAbsent, "AMD's device library is not installed"};
  // A card whose bus cannot be looked up is told as one at bus 0.
  const std::uint32_t failure = platform::RegistrySubkeys(kPciDevices).failure;
  const bool is_hidden = answer.state == SourceState::kPresent && failure != 0;
  return is_hidden ? FailedWith(answer.remark + "; the registry does not tell their bus", failure) : answer;
}

Answer AskIntel(Clients& clients) {
  std::vector<std::string> failures;
  const FailedQueries failed_queries(failures);
  std::vector<GraphicCardInfo> cards;
  const common::Error outcome = IntelCardInfo(clients.wmi).QueryValues(&cards);
  if (!outcome.Failed()) return {SourceState::kPresent, CardsText(cards)};
  // Its back-end finds no adapter also where the list of adapters cannot be had.
  if (!failures.empty()) return {SourceState::kFailed, failures.front()};
  const bool is_absent = outcome.kind == common::Error::kCallFailed && outcome.code == kNoIntelAdapter;
  return {is_absent ? SourceState::kAbsent : SourceState::kFailed, ErrorText(outcome)};
}

// The figures of a session are its own: a host that runs as a service sees nothing of the user's.
Answer TellSession() {
  const std::optional<std::uint32_t> number = platform::SessionNumber();
  if (!number) return {SourceState::kFailed, "the system does not tell the number of this session"};
  const std::string text = "session " + std::to_string(*number);
  if (*number != platform::kSessionOfServices) return {SourceState::kPresent, text};
  return {SourceState::kPresent, text + ", that of the services: input and windows are not the user's"};
}

// The clock is asked behind the builder, so that the builder reads it as in a collection.
Answer AskSession(Clients& clients) {
  OperatingSystemInfoMsg builder(&clients.wmi);
  try {
    const Answer answer = AskBuilder(builder, "no figures");
    return answer.state == SourceState::kPresent ? TellSession() : answer;
  } catch (...) {
    std::string failure = CurrentFailureText();
    if (platform::TickCountMs() != 0) return {SourceState::kFailed, std::move(failure)};
    return {SourceState::kAbsent, "no session: the clock of the system's start stands still"};
  }
}

constexpr std::array kSources = {
    Source{"Serial number", AskSerialNumber},
    Source{"Firmware temperatures", [](Clients& clients) { return FirmwareReadings(clients).Ask(); }},
    Source{"Batteries", AskBatteries},
    Source{"Posture",
           [](Clients& clients) {
             DeviceStateInfoMsg builder(&clients.wmi);
             return AskBuilder(builder, "no posture");
           }},
    Source{"Memory",
           [](Clients& clients) {
             MemoryInfoMsg builder(&clients.wmi);
             return AskBuilder(builder, "no figures");
           }},
    Source{"NVIDIA graphics", AskNvidia},
    Source{"AMD graphics", AskAmd},
    Source{"Intel graphics", AskIntel},
    Source{"Graphics cards",
           [](Clients& clients) {
             GPUInfoMsg builder(&clients.wmi, &clients.bios);
             return AskBuilder(builder, "no card that a vendor's library tells of");
           }},
    Source{"NPUs", AskNpus},
    Source{"Storage drives",
           [](Clients& clients) {
             StorageInfoMsg builder(&clients.wmi, &clients.bios);
             return AskBuilder(builder, "no drive with an identity");
           }},
    Source{"Processes and session", AskSession},
};

Answer AskSafely(const Source& source, Clients& clients) {
  try {
    return source.ask(clients);
  } catch (...) {
    return {SourceState::kFailed, CurrentFailureText()};
  }
}

SourceReport Inspect(const Source& source, Clients& clients) {
  PerfMessages::static_cdm_->Clear();
  const auto start = std::chrono::steady_clock::now();
  Answer answer = AskSafely(source, clients);
  const std::chrono::nanoseconds time = std::chrono::steady_clock::now() - start;
  SourceReport report{source.name, answer.state, std::move(answer.remark), time, {}};
  if (answer.state != SourceState::kAbsent) report.figures = *PerfMessages::static_cdm_;
  return report;
}

}  // namespace
}  // namespace zt::telemetry::inspection

void ztInspectSources(plog::Severity log_level, plog::IAppender* log,
                      const zt::telemetry::inspection::ReportReceiver& receive) {
  using namespace zt::telemetry::inspection;
  ztSharedInitializeLogger(log_level, log);
  PerfMessages::Init(nullptr, kEventOfInspections);
  Clients clients;
  for (const Source& source : kSources) receive(Inspect(source, clients));
}
