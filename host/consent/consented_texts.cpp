#include "host/consent/consented_texts.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace zt::telemetry::host {
namespace {

// What follows on the words of a message.
enum class Rest { kNothing, kNumber, kAnyText };

struct KnownWords {
  std::string_view words;
  Rest rest;
};

// Words that the collector and this program have in messages. What is not listed is held back whole, so that a message
// that is new, or another plugin's, tells nothing that nobody has looked at.
constexpr std::array kKnownWords = std::to_array<KnownWords>({
    {"Started zt::telemetry::collector::performancesamples::PerformanceSamples::ReadSource", Rest::kNothing},
    {"Finished zt::telemetry::collector::performancesamples::PerformanceSamples::ReadSource", Rest::kNothing},
    {"Error handling message. Details: ", Rest::kAnyText},
    {"PerfMessages::ProcessStorageAndUpload - perf_handle_ is null.", Rest::kNothing},
    {"IPV4 statistics not found", Rest::kNothing},
    {"IPV6 statistics not found", Rest::kNothing},
    {"COM initialization failed", Rest::kNothing},
    {"Failed to initialize COM.", Rest::kNumber},
    {"Failed to retrieve WLAN profile for ", Rest::kAnyText},
    {"Error occurred while retrieving WLAN interface statistics: ", Rest::kAnyText},
    {"Processes are left out: querying Win32_Process failed with status ", Rest::kNumber},
    {"A process is left out: ", Rest::kAnyText},
    {"No process is reported: the performance data of processes did not come in time", Rest::kNothing},
    {"The processor's temperature is not known: its thermal zone did not answer in time", Rest::kNothing},
    {"Error while querying ", Rest::kAnyText},
});

// Of a status: more digits would be something else.
bool IsStatus(std::string_view text) {
  constexpr std::size_t kLongestStatus = sizeof "-2147483648" - 1;
  return !text.empty() && text.size() <= kLongestStatus &&
         text.find_first_not_of("0123456789", text.front() == '-' ? 1 : 0) == std::string_view::npos;
}

bool MayStay(Rest rest, std::string_view text) {
  return text.empty() || (rest == Rest::kNumber && IsStatus(text));
}

}  // namespace

std::string ConsentedMessage(const Consent& consent, const std::string& message) {
  if (consent.IsWhole()) return message;
  const auto* const known = std::ranges::find_if(
      kKnownWords, [&](const KnownWords& candidate) { return message.starts_with(candidate.words); });
  if (known == kKnownWords.end()) return kLeftOut;
  const std::string_view rest = std::string_view(message).substr(known->words.size());
  return MayStay(known->rest, rest) ? message : std::string(known->words) + kLeftOut;
}

std::string ConsentedQuery(const Consent& consent, const std::string& query) {
  if (consent.IsWhole()) return query;
  constexpr std::string_view kQuotes = "'\"";
  std::string told;
  for (std::size_t i = 0; i < query.size(); ++i) {
    told += query[i];
    if (kQuotes.find(query[i]) == std::string_view::npos) continue;
    const char quote = query[i];
    // A backslash takes the meaning from the character behind it.
    for (++i; i < query.size() && query[i] != quote; ++i) i += query[i] == '\\' ? 1 : 0;
    told.append(kLeftOut).append(1, quote);
  }
  return told;
}

}  // namespace zt::telemetry::host
