// The XML of a Wi-Fi profile, from which two texts are cut.
#include "network/profile_xml.h"

#include <string>

#include "harness.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zt::telemetry::collector::performancesamples;
  const std::string xml(zt::fuzz::TextOf(data, size));
  for (const std::string& cut : {CutAuthentication(xml), CutEncryption(xml)}) {
    zt::fuzz::Require(xml.find(cut) != std::string::npos, "what is cut out stands in the profile");
  }
  return 0;
}
