#include "zt/shared/ztbios/private_bios_wmi.h"

#include <zt/com/com_apartment.h>
#include <zt/com/wmi_connection.h>

#include <algorithm>

#include "firmware_command.h"

namespace zt::shared::ztbios {
namespace {

constexpr wchar_t kNamespace[] = L"\\\\.\\root\\wmi";

HRESULT Run(const FirmwareCommand& command, FirmwareReply& reply) {
  const com::ComApartment apartment;
  if (FAILED(apartment.Status())) return apartment.Status();
  com::ComPtr<IWbemServices> services;
  const HRESULT status = com::ConnectToNamespace(kNamespace, services);
  return FAILED(status) ? status : RunFirmwareCommand(*services.Get(), command, reply);
}

void CopyCutAndPadded(const std::vector<std::uint8_t>& from, std::span<std::uint8_t> to) {
  const std::size_t size = std::min(from.size(), to.size());
  std::copy_n(from.begin(), size, to.begin());
  std::fill(to.begin() + static_cast<std::ptrdiff_t>(size), to.end(), std::uint8_t{0});
}

}  // namespace

PrivateBiosWmi::PrivateBiosWmi() = default;

PrivateBiosWmi::~PrivateBiosWmi() = default;

std::int32_t PrivateBiosWmi::ExecuteCommand(std::uint32_t command, std::uint32_t command_type, std::uint32_t input_size,
                                            const std::uint8_t* input, std::uint32_t output_size, std::uint8_t* output,
                                            std::uint32_t* return_code) {
  const bool has_buffers = (input != nullptr || input_size == 0) && (output != nullptr || output_size == 0);
  if (!has_buffers || return_code == nullptr) return E_POINTER;
  FirmwareReply reply;
  const HRESULT status = Run({command, command_type, {input, input_size}, output_size}, reply);
  if (FAILED(status)) return status;
  CopyCutAndPadded(reply.output, {output, output_size});
  *return_code = reply.return_code;
  return S_OK;
}

}  // namespace zt::shared::ztbios
