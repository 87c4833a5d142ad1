#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "zt/zt_battery_info_export.h"

namespace zt::shared::battery {

/// Options of the battery library's test bench; production code passes null.
struct ZTBatteryTestInfo;

/// Flags of a battery, a block of bytes in the layout of the battery firmware.
struct ZTBatteryStatus {
  std::uint8_t reserved[9];
  std::uint8_t on_ac_not_charging;  // byte 9
  std::uint8_t discharging;         // byte 10
};

/// One battery, as it was when the set was read. The order of the operations is the library's binary interface. A
/// figure that the battery does not tell is 0, a text empty; texts are UTF-8 and live as long as the battery.
class ZTBatteryInfo {
 public:
  /// The number that the maker gave the battery.
  virtual const char* GetSerialNumber() = 0;
  /// The maker's part tracking number.
  virtual const char* GetCTNumber() = 0;
  /// Millivolts.
  virtual std::int32_t GetDesignVoltage() = 0;
  /// Milliwatt hours: the capacity that the battery was designed for.
  virtual std::int32_t GetFurtherCapacity() = 0;
  /// Milliwatt hours: the capacity that a full charge has now.
  virtual std::int32_t GetFullChargeCapacity() = 0;
  /// Percent of the design capacity that a full charge has now: the battery's health.
  virtual float GetFullChargePercent() = 0;
  /// Milliwatt hours: what is left.
  virtual std::uint32_t GetRemainingCapacity() = 0;
  /// Percent of a full charge that is left.
  virtual float GetRemainingPercent() = 0;
  /// Percent by which the battery's own figures may be off.
  virtual std::uint32_t GetMaxErrorPercent() = 0;
  virtual std::uint32_t GetCycleCount() = 0;
  /// Whole degrees Celsius.
  virtual std::int32_t GetTemperature() = 0;
  /// Present voltage, millivolts.
  virtual std::int32_t GetVoltage() = 0;
  /// Milliamperes, in or out of the battery.
  virtual std::uint32_t GetElectricCurrent() = 0;
  /// Bits of the smart battery's status word: 0x80 initialised, 0x40 discharging or at rest, 0x20 fully charged, 0x200
  /// alarm of low charge.
  virtual std::int32_t GetStatusCode() = 0;
  /// The same block as `GetChargeState`.
  virtual void GetSecondStatus(ZTBatteryStatus* status) = 0;
  /// Fills the flags; neither is set while the battery is charged.
  virtual void GetChargeState(ZTBatteryStatus* status) = 0;
  /// Milliwatts into the battery; 0 while it is not charged.
  virtual std::int32_t GetChargeRate() = 0;
  /// Milliwatts out of the battery; 0 while it is not discharged.
  virtual std::uint32_t GetDischargeRate() = 0;

 protected:
  ~ZTBatteryInfo() = default;
};

class KnownBattery;

/// The batteries that can power the machine, as they were at construction. A UPS and the batteries of mice, pens and
/// the like are not among them.
class ZT_BATTERY_INFO_EXPORT ZTBatteries {
 public:
  /// Reads the batteries. The arguments belong to the library's interface: whether live and static figures are wanted,
  /// and options for its test bench. All figures are read whatever they say.
  ZTBatteries(bool with_live_figures, bool with_static_figures, void* reserved, ZTBatteryTestInfo* test_info);
  virtual ~ZTBatteries();
  ZTBatteries(const ZTBatteries&) = delete;
  ZTBatteries& operator=(const ZTBatteries&) = delete;

  /// The battery at `index`, null when there is none. It belongs to this object.
  virtual ZTBatteryInfo* Query(unsigned char index);

  /// The system's error code of the first battery that is there and could not be read, or of listing the batteries; 0
  /// where each of them was read, also where there is none.
  std::uint32_t GetReadError() const { return read_error_; }

 private:
  std::vector<std::unique_ptr<KnownBattery>> batteries_;
  std::uint32_t read_error_ = 0;
};

}  // namespace zt::shared::battery
