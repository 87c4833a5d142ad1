#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>

/// The words for what the WLAN service numbers.
namespace zt::telemetry::collector::performancesamples {

using WlanVocabulary = std::unordered_map<std::uint32_t, std::string>;

/// `DOT11_PHY_TYPE`: the standard that a link keeps to.
extern const WlanVocabulary kRadioTypeTexts;

/// `DOT11_AUTH_ALGORITHM`. Nothing looks a word up yet: profiles tell theirs in words of their own.
extern const WlanVocabulary kAuthenticationTexts;

/// `DOT11_CIPHER_ALGORITHM`. Likewise.
extern const WlanVocabulary kCipherTexts;

}  // namespace zt::telemetry::collector::performancesamples
