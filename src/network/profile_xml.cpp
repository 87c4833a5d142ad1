#include "network/profile_xml.h"

#include <string_view>

namespace zt::telemetry::collector::performancesamples {
namespace {

constexpr std::string_view kAuthenticationStart = "<authentication>";
constexpr std::string_view kAuthenticationEnd = "</authentication>";
constexpr std::string_view kEncryptionStart = "<encryption>";
constexpr std::string_view kEncryptionEnd = "</encryption>";

std::string Cut(const std::string& xml, std::string_view opening, std::string_view closing) {
  const std::size_t end = xml.find(closing);
  if (end == std::string::npos) return {};
  // Both sums wrap. Not found is the largest number, so that a missing opening tag starts one byte short of its length;
  // an end before the start is a length beyond that of the text.
  const std::size_t start = xml.find(opening) + opening.size();
  return xml.substr(start, end - start);
}

}  // namespace

std::string CutAuthentication(const std::string& xml) {
  return Cut(xml, kAuthenticationStart, kAuthenticationEnd);
}

std::string CutEncryption(const std::string& xml) {
  return Cut(xml, kEncryptionStart, kEncryptionEnd);
}

}  // namespace zt::telemetry::collector::performancesamples
