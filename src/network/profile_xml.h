#pragma once

#include <string>

/// What is cut out of the XML of a Wi-Fi profile (UTF-8). The text between the first opening and the first closing tag
/// is taken, with the arithmetic that hosts know: empty without a closing tag; from a fixed byte on (15 for
/// authentication, 11 for encryption) without an opening one; to the end of the XML where the closing tag comes before
/// the start.
namespace zt::telemetry::collector::performancesamples {

/// The text of the authentication element: "WPA2PSK".
std::string CutAuthentication(const std::string& xml);

/// The text of the encryption element: "AES".
std::string CutEncryption(const std::string& xml);

}  // namespace zt::telemetry::collector::performancesamples
