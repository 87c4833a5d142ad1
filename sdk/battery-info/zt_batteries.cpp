#include "zt/shared/battery/zt_batteries.h"

#include <optional>
#include <utility>

#include "battery_source.h"
#include "known_battery.h"

namespace zt::shared::battery {

ZTBatteries::ZTBatteries(bool /*with_live_figures*/, bool /*with_static_figures*/, void* /*reserved*/,
                         ZTBatteryTestInfo* /*test_info*/) {
  MachineBatteries machine = ReadBatteries();
  read_error_ = machine.error;
  for (std::optional<BatteryFigures>& figures : machine.by_index) {
    batteries_.push_back(figures ? std::make_unique<KnownBattery>(std::move(*figures)) : nullptr);
  }
}

ZTBatteries::~ZTBatteries() = default;

ZTBatteryInfo* ZTBatteries::Query(unsigned char index) {
  return index < batteries_.size() ? batteries_[index].get() : nullptr;
}

}  // namespace zt::shared::battery
