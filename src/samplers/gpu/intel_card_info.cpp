#include "samplers/gpu/intel_card_info.h"

#include <plog/Log.h>

#include <cstdint>
#include <string>
#include <typeinfo>
#include <utility>

namespace zt::telemetry::collector::performancesamples {
namespace {

using common::Error;
using shared::wmi::WMIClient;
using types::GraphicCardInfo;

constexpr wchar_t kPresenceQuery[] =
    LR"(SELECT __Class FROM Win32_VideoController WHERE AdapterCompatibility="Intel Corporation")";
constexpr wchar_t kSerialQuery[] = L"SELECT SerialNumber FROM Win32_BIOS";
// The zone is "\_TZ.CPUZ"; WQL writes its backslash as two.
constexpr wchar_t kTemperatureQuery[] =
    LR"(SELECT Temperature FROM Win32_PerfFormattedData_Counters_ThermalZoneInformation WHERE Name = "\\_TZ.CPUZ")";

constexpr char kNoIntelGpu[] = "Intel GPU not found";
// 273 and not 273.15: whole kelvin to whole degrees.
constexpr std::uint32_t kFreezingPointKelvin = 273;

// Reads a property of a query's first row; without it `value` stays as it is. Returns the query's status.
template <typename T>
std::int32_t ReadFirst(WMIClient& wmi, const std::wstring& query, const std::wstring& property, T& value) {
  const std::int32_t status = wmi.ExecQuery(query);
  wmi.Next();
  wmi.GetValue(property, value);
  return status;
}

// Without the zone this wraps to 4294967023, by which analyses tell such machines. A zone that did not answer in time
// is another thing: 0 stands for "not known", and another source is asked.
std::uint32_t ReadTemperature(WMIClient& wmi) {
  std::uint32_t kelvin = 0;
  if (ReadFirst(wmi, kTemperatureQuery, L"Temperature", kelvin) == shared::wmi::kTimedOut) {
    PLOG_WARNING << "The processor's temperature is not known: its thermal zone did not answer in time";
    return 0;
  }
  return kelvin - kFreezingPointKelvin;
}

bool HasRow(WMIClient& wmi, const std::wstring& query) {
  wmi.ExecQuery(query);
  return wmi.Next();
}

}  // namespace

IntelCardInfo::IntelCardInfo(WMIClient& wmi) : wmi_(wmi) {}

Error IntelCardInfo::QueryValues(std::vector<GraphicCardInfo>* cards) {
  try {
    return AddCard(*cards);
  } catch (...) {
    return Error::FromCurrentException();
  }
}

Error IntelCardInfo::AddCard(std::vector<GraphicCardInfo>& cards) {
  if (!HasRow(wmi_, kPresenceQuery)) {
    return {Error::kCallFailed, kNoIntelAdapter, kNoIntelGpu, typeid(IntelCardInfo).name(), ""};
  }
  GraphicCardInfo card;
  // The machine's serial number: integrated graphics has none of its own.
  ReadFirst(wmi_, kSerialQuery, L"SerialNumber", card.serial_number);
  card.temperature_celsius = ReadTemperature(wmi_);
  cards.push_back(std::move(card));
  return {};
}

}  // namespace zt::telemetry::collector::performancesamples
