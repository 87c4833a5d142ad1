#include "zt/shared/ztbios/private_bios_wmi.h"

#include <algorithm>

#include "firmware_interface.h"

namespace zt::shared::ztbios {
namespace {

void CopyCutAndPadded(const std::vector<std::uint8_t>& from, std::span<std::uint8_t> to) {
  const std::size_t size = std::min(from.size(), to.size());
  std::copy_n(from.begin(), size, to.begin());
  std::fill(to.begin() + static_cast<std::ptrdiff_t>(size), to.end(), std::uint8_t{0});
}

}  // namespace

PrivateBiosWmi::PrivateBiosWmi() : interface_(std::make_unique<FirmwareInterface>()) {}

PrivateBiosWmi::~PrivateBiosWmi() = default;

std::int32_t PrivateBiosWmi::ExecuteCommand(std::uint32_t command, std::uint32_t command_type, std::uint32_t input_size,
                                            const std::uint8_t* input, std::uint32_t output_size, std::uint8_t* output,
                                            std::uint32_t* return_code) {
  const bool has_buffers = (input != nullptr || input_size == 0) && (output != nullptr || output_size == 0);
  if (!has_buffers || return_code == nullptr) return E_POINTER;
  FirmwareReply reply;
  const HRESULT status = interface_->Run({command, command_type, {input, input_size}, output_size}, reply);
  if (FAILED(status)) return status;
  CopyCutAndPadded(reply.output, {output, output_size});
  *return_code = reply.return_code;
  return S_OK;
}

}  // namespace zt::shared::ztbios
