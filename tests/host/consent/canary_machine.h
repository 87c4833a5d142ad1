#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "simulation/embedded_profiles.h"
#include "support/sample_store_fixture.h"

namespace zt::tests {

/// A machine, and samples of it, on which each text that can identify is a canary: one that stands nowhere else.
class CanaryMachine {
 public:
  CanaryMachine() : digits_(Digits()), mark_("cx" + digits_) {
    for (const auto& profile : simulation::EmbeddedProfiles()) {
      if (profile.name == "everything") profile_ = profile.json;
    }
    Mark("5CG0000003", "machine");
    Mark("\"00042\"", "battery", R"("@")");
    Mark("6LBTC0A1B2C3D4", "tracking");
    Mark("\"00043\"", "battery 2", R"("@")");
    Mark("6LBTC0A1B2C3D5", "tracking 2");
    Mark("1650000000003", "graphics card");
    Mark("SATA0000000003", "drive");
    Mark("NVME0000000001", "drive of the library");
    Mark("MEDIA0000002", "medium");
    Mark("video-call", "process");
    Mark("compiler", "process 2");
    Mark("updater", "process 3");
    Mark("editor", "process 4");
    Mark("Weekly call", "window");
    Mark("notes.txt", "window 2");
    Mark("2B1A9C5", "NPU");
    Mark("11583659", "device");
    MarkIdentifier("000000000001}", "adapter", "A1");
    MarkIdentifier("000000000002}", "adapter 2", "A2");
    Mark("02:00:00:00:00:01", "MAC address");
    Mark("USB Ethernet Adapter", "name of the adapter");
    Mark("Office VPN Adapter", "name of the VPN");
    Mark("AX Adapter", "name of the Wi-Fi adapter");
    Mark("\"Wi-Fi\"", "connection", R"("@")");
    Mark("\"Home\"", "Wi-Fi profile", R"("@")");
    Mark("Caf\xC3\xA9 Guest", "Wi-Fi profile 2");
  }

  /// The machine, as a profile.
  const std::string& Profile() const { return profile_; }

  /// A sample of each kind in `folder` (UTF-8, with a separator at its end).
  void AddSamples(const std::string& folder) {
    SampleStore store(folder + "ssm.db");
    if (!has_samples_) store.CreateTables();
    has_samples_ = true;
    store.AddThermal("2026-03-07T12:00:30.000Z");
    store.AddNetwork("2026-03-07T12:00:30.000Z", {{"interface_device_id", "'" + Canary("sampled interface") + "'"},
                                                  {"profile_name_hash", "x'" + kSampledProfile + "'"}});
  }

  /// What each canary is of, and its text, which stands as often as needed.
  const std::vector<std::pair<std::string, std::string>>& Canaries() const { return canaries_; }

  std::string Canary(const std::string& of) {
    const auto known = std::ranges::find(canaries_, of, &std::pair<std::string, std::string>::first);
    if (known != canaries_.end()) return known->second;
    return canaries_
        .emplace_back(
            of, mark_ + static_cast<char>('a' + canaries_.size() / 26) + static_cast<char>('a' + canaries_.size() % 26))
        .second;
  }

  /// What stands in `text` and must not where everything is held back.
  std::vector<std::string> FoundIn(const std::string& text) const {
    std::vector<std::string> found;
    for (const auto& [of, canary] : canaries_) {
      if (text.find(canary) != std::string::npos) found.push_back(of);
    }
    if (text.find(kSampledProfile) != std::string::npos) found.push_back("sampled Wi-Fi profile");
    for (const char* start : {"T11:02:11", "T12:18:03"}) {
      if (text.find(start) != std::string::npos) found.push_back("start of a process");
    }
    // One that has no name of its own.
    if (found.empty() && text.find(mark_) != std::string::npos) found.push_back("part of a canary");
    return found;
  }

 private:
  inline static const std::string kSampledProfile = "C0FFEE5EC2E70042";

  static std::string Digits() {
    constexpr int kFirst = 1000;
    constexpr int kLast = 9999;
    std::random_device random;
    return std::to_string(std::uniform_int_distribution<int>(kFirst, kLast)(random));
  }

  void Mark(std::string_view text, const std::string& of, std::string form = "@") {
    form.replace(form.find('@'), 1, Canary(of));
    int times = 0;
    for (std::size_t at = profile_.find(text); at != std::string::npos; at = profile_.find(text, at + form.size())) {
      profile_.replace(at, text.size(), form);
      ++times;
    }
    EXPECT_GT(times, 0) << text << " is not in the profile";
  }

  // The system reads these: their canaries are numbers in hexadecimal.
  void MarkIdentifier(std::string_view text, const std::string& of, const std::string& ending) {
    const std::string canary = "C0DE" + digits_ + "CA" + ending;
    canaries_.emplace_back(of, canary);
    Mark(text, of, "@}");
  }

  std::string digits_;
  std::string mark_;
  std::string profile_;
  std::vector<std::pair<std::string, std::string>> canaries_;
  bool has_samples_ = false;
};

}  // namespace zt::tests
