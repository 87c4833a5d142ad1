// The firmware's SMBIOS table.
#include <optional>
#include <string>
#include <vector>

#include "harness.h"
#include "zt/shared/smbios/smbios_info.h"

namespace {

using zt::fuzz::Require;
using zt::shared::smbios::SMBiosInfo;

class InputReader : public zt::shared::smbios::FirmwareReader {
 public:
  InputReader(const std::uint8_t* data, std::size_t size) : table_(data, data + size) {}
  std::vector<std::uint8_t> ReadTable() override { return table_; }

 private:
  std::vector<std::uint8_t> table_;
};

void CheckText(const std::optional<std::string>& text, std::size_t longest) {
  if (!text) return;
  Require(text->find('\0') == std::string::npos, "a text of the table ends with its zero");
  Require(text->size() <= longest, "a text of the table lies in it");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  InputReader reader(data, size);
  const SMBiosInfo table(&reader);
  const auto& system = table.GetTypeSysInfo();
  for (const auto& text : {system.manufacturer, system.product_name, system.version, system.serial_number}) {
    CheckText(text, size);
  }
  for (const auto& battery : table.GetPortableBatteries()) {
    CheckText(battery.serial_number, size);
    CheckText(battery.device_name, size);
    Require(battery.design_voltage_mv != 0 && battery.max_error_percent != 0xFF, "what is unknown is absent");
  }
  Require(table.GetPortableBatteries().size() <= size / 4, "a structure has a header of its own");
  Require(table.GetReadError() == 0, "a table that is there was read");
  return 0;
}
