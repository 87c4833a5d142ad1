#pragma once

#include <cstdint>
#include <string_view>

namespace zt::telemetry::collector::performancesamples {

/// The PCI bus of the first adapter in the registry whose hardware identifier carries these two identifiers
/// (hexadecimal digits; case, "0x" and leading zeros do not count). 0 when there is none, none of its instances tells
/// where it is, or an identifier is no hexadecimal number of 32 bits: such a text matches nothing.
std::uint32_t PciBusNumber(std::string_view vendor_id, std::string_view device_id);

/// Why the registry does not tell its adapters, the status; 0 where it does. `PciBusNumber` takes both alike.
std::uint32_t PciAdaptersFailure();

}  // namespace zt::telemetry::collector::performancesamples
