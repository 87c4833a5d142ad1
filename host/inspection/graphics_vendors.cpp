#include "host/inspection/graphics_vendors.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "host/inspection/failed_queries.h"
#include "host/inspection/failure_text.h"
#include "platform/library.h"
#include "platform/nvml_files.h"
#include "samplers/gpu/amd_card_info.h"
#include "samplers/gpu/intel_card_info.h"
#include "samplers/gpu/nvidia_card_info.h"
#include "samplers/gpu/pci_bus_number.h"

namespace zt::telemetry::host::inspection {
namespace {

namespace platform = samples::platform;
using samples::AbstractGPUVendor;
using samples::AmdCardInfo;
using samples::IntelCardInfo;
using samples::NvidiaCardInfo;
using samples::types::GraphicCardInfo;

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
  if (outcome.Failed()) return {SourceState::kFailed, OutcomeText(outcome)};
  if (cards.empty()) return {SourceState::kAbsent, "no card of this vendor"};
  return {SourceState::kPresent, CardsText(cards)};
}

bool IsNvmlInstalled() {
  const std::vector<std::filesystem::path> files = platform::NvmlFiles();
  return std::any_of(files.begin(), files.end(),
                     [](const auto& file) { return static_cast<bool>(platform::Library::Load(file)); });
}

// A library that lacks what the back-end needs gives the same code as none at all.
Answer AskNvidia(samples::Clients&) {
  NvidiaCardInfo vendor;
  Answer answer = AskVendor(vendor);
  if (answer.state == SourceState::kFailed && !IsNvmlInstalled()) {
    return {SourceState::kAbsent, "NVIDIA's management library is not installed"};
  }
  return answer;
}

Answer AskAmd(samples::Clients&) {
  AmdCardInfo vendor;
  Answer answer = AskVendor(vendor);
  if (!vendor.Library().IsLoaded()) return {SourceState::kAbsent, "AMD's device library is not installed"};
  // A card whose bus cannot be looked up is told as one at bus 0.
  const std::uint32_t failure = samples::PciAdaptersFailure();
  const bool is_hidden = answer.state == SourceState::kPresent && failure != 0;
  return is_hidden ? FailedWith(answer.remark + "; the registry does not tell their bus", failure) : answer;
}

Answer AskIntel(samples::Clients& clients) {
  if (clients.Wmi() == nullptr) return {SourceState::kFailed, "there is no client to ask WMI through"};
  std::vector<std::string> failures;
  const FailedQueries failed_queries(failures);
  std::vector<GraphicCardInfo> cards;
  const common::Error outcome = IntelCardInfo(*clients.Wmi()).QueryValues(&cards);
  if (!outcome.Failed()) return {SourceState::kPresent, CardsText(cards)};
  // Its back-end finds no adapter also where the list of adapters cannot be had.
  if (!failures.empty()) return {SourceState::kFailed, failures.front()};
  const bool is_absent = outcome.kind == common::Error::kCallFailed && outcome.code == samples::kNoIntelAdapter;
  return {is_absent ? SourceState::kAbsent : SourceState::kFailed, OutcomeText(outcome)};
}

constexpr std::array kVendorChecks = {
    Check{"NVIDIA graphics", AskNvidia},
    Check{"AMD graphics", AskAmd},
    Check{"Intel graphics", AskIntel},
};

}  // namespace

std::span<const Check> GraphicsVendors() {
  return kVendorChecks;
}

}  // namespace zt::telemetry::host::inspection
