#pragma once

#include <string>
#include <vector>

#include "messages/perf_messages.h"

namespace zt::telemetry::collector::performancesamples {

/// Adds the graphics cards to the hardware section, as three vendors' back-ends tell of them.
class ZT_COLLECTOR_EXPORT GPUInfoMsg : public PerfMessages {
 public:
  explicit GPUInfoMsg(const PerfMessages& other);
  GPUInfoMsg(shared::wmi::WMIClient* wmi_client, shared::ztbios::PrivateBiosWmi* private_bios_wmi);

  /// Writes at most 32 entries, and the temperature of the last of them into `thermal_`. A vendor that fails costs its
  /// own turn only, and no line of the log.
  void PopulateStorageAndUploadProtos() override;

 protected:
  /// The device identifier of the first video controller that WMI lists, whichever card it belongs to; `serial` stays
  /// as it is where there is none, and where the client is missing or throws.
  void AlternativeSNRetrieval(std::string& serial);

  /// The firmware's reading of the graphics temperature, whole degrees Celsius; `temperature` stays as it is where the
  /// firmware does not answer or has no reading, and where the client is missing or throws. The last two parameters
  /// belong to the host's interface and are not used; they may be null.
  void AlternativeTempRetrieval(unsigned int& temperature, unsigned long* returnCode,
                                std::vector<unsigned char>* output);
};

}  // namespace zt::telemetry::collector::performancesamples
