#pragma once

#include <cstdint>
#include <memory>
#include <vector>

namespace zt::shared::battery {

/// Options of the battery library's test bench; production code passes null.
struct ZTBatteryTestInfo;

/// Flags of a battery, a block of bytes in the layout of the battery firmware.
struct ZTBatteryStatus {
  std::uint8_t reserved[9];
  std::uint8_t on_ac_not_charging;  // byte 9
  std::uint8_t discharging;         // byte 10
};

/// One battery. The order of the operations is the library's binary interface. A figure that the battery does not tell
/// is 0, a text empty.
class ZTBatteryInfo {
 public:
  virtual const char* GetSerialNumber() = 0;
  virtual const char* GetCTNumber() = 0;
  /// Millivolts.
  virtual std::int32_t GetDesignVoltage() = 0;
  /// Milliwatt hours: the capacity that the battery was designed for.
  virtual std::int32_t GetFurtherCapacity() = 0;
  /// Milliwatt hours.
  virtual std::int32_t GetFullChargeCapacity() = 0;
  virtual float GetFullChargePercent() = 0;
  /// Milliwatt hours.
  virtual std::uint32_t GetRemainingCapacity() = 0;
  virtual float GetRemainingPercent() = 0;
  virtual std::uint32_t GetMaxErrorPercent() = 0;
  virtual std::uint32_t GetCycleCount() = 0;
  /// Whole degrees Celsius.
  virtual std::int32_t GetTemperature() = 0;
  /// Present voltage, millivolts.
  virtual std::int32_t GetVoltage() = 0;
  /// Milliamperes.
  virtual std::uint32_t GetElectricCurrent() = 0;
  virtual std::int32_t GetStatusCode() = 0;
  virtual void GetSecondStatus(ZTBatteryStatus* status) = 0;
  virtual void GetChargeState(ZTBatteryStatus* status) = 0;
  /// Milliwatts.
  virtual std::int32_t GetChargeRate() = 0;
  /// Milliwatts.
  virtual std::uint32_t GetDischargeRate() = 0;

 protected:
  ~ZTBatteryInfo() = default;
};

/// The batteries of the machine as they were at construction.
class ZTBatteries {
 public:
  /// The first two arguments choose live figures and static figures; the others are for the library's test bench.
  ZTBatteries(bool with_live_figures, bool with_static_figures, void* reserved, ZTBatteryTestInfo* test_info);
  virtual ~ZTBatteries();

  /// The battery at `index`, null when there is none. It belongs to this object.
  virtual ZTBatteryInfo* Query(unsigned char index);
};

}  // namespace zt::shared::battery
