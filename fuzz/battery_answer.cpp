// What a battery's driver answers to each question. The bytes of an input are the answers, each behind its error and
// its length.
#include <utf8.h>

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "battery_reading.h"
#include "figure_conversion.h"
#include "harness.h"
#include "input_bytes.h"

namespace {

using namespace zt::shared::battery;

class Driver {
 public:
  explicit Driver(zt::fuzz::InputBytes input) : input_(input) {}

  ControlOutcome Answer(std::span<std::byte> output) {
    const std::uint32_t error = input_.Byte() % kErrors;
    const std::size_t stated = input_.Byte();
    const std::span<const std::uint8_t> bytes = input_.Take(std::min(stated, output.size()));
    if (!bytes.empty()) std::memcpy(output.data(), bytes.data(), bytes.size());
    return {error, stated};
  }

 private:
  // Success, some that mean nothing here, and that of a battery that is gone.
  static constexpr std::uint32_t kErrors = 4;

  zt::fuzz::InputBytes input_;
};

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Driver driver(zt::fuzz::InputBytes({data, size}));
  const SlotReading slot = ReadBattery([&](std::uint32_t /*code*/, std::span<const std::byte> /*input*/,
                                           std::span<std::byte> output) { return driver.Answer(output); });
  zt::fuzz::Require(!slot.battery || slot.error == protocol::kSuccess, "a battery that was read has no error");
  if (!slot.battery) return 0;
  for (const std::string& text : {slot.battery->serial_number, slot.battery->unique_id, slot.battery->device_name}) {
    zt::fuzz::Require(utf8::is_valid(text.begin(), text.end()), "a battery's texts are UTF-8");
  }
  const std::vector<zt::shared::smbios::TypePortableBattery> firmware = {
      {slot.battery->serial_number, slot.battery->device_name, 11400, 3}};
  zt::fuzz::Require(FiguresOf({*slot.battery}, firmware).size() <= 1, "one battery has one set of figures");
  return 0;
}
