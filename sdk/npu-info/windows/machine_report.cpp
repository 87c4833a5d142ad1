#include "machine_report.h"

#include <zt/com/com_handles.h>

#include <vector>

#include "npu_report.h"
#include "windows/device_instance.h"
#include "windows/dxcore_npus.h"
#include "windows/kernel_figures.h"
#include "windows/system_library.h"

namespace zt::shared::npu {
namespace {

using com::ComPtr;
using dxcore::IAdapterFactory;

// Null where Windows has no DXCore.
ComPtr<IAdapterFactory> MakeFactory(const SystemLibrary& library) {
  const auto create = library.Find<dxcore::CreateFactory>(dxcore::kCreateFactoryName);
  void* factory = nullptr;
  ComPtr<IAdapterFactory> owner;
  if (create == nullptr || FAILED(create(dxcore::kFactoryId, &factory))) return owner;
  com::TakeOver(owner, static_cast<IAdapterFactory*>(factory));
  return owner;
}

// Two NPUs of one model that the system has no devices for share an identifier.
std::string NameDevice(const DxcoreNpu& npu) {
  const std::string instance = FindDeviceInstance(npu.luid);
  return !instance.empty() ? instance : HardwareId(npu.parts);
}

}  // namespace

std::string ReadMachineReport() {
  const SystemLibrary dxcore_library(dxcore::kLibrary);
  const SystemLibrary kernel_library(kernel::kLibrary);
  const ComPtr<IAdapterFactory> factory = MakeFactory(dxcore_library);
  if (!factory) return {};
  const kernel::Calls calls = kernel::FindCalls(kernel_library);
  std::vector<Npu> npus;
  for (const DxcoreNpu& found : ReadDxcoreNpus(*factory.Get())) {
    Npu& npu = npus.emplace_back();
    npu.device_id = NameDevice(found);
    npu.memory_size = found.memory_size;
    ReadKernelFigures(calls, found.luid, npu);
  }
  return ComposeReport(npus);
}

}  // namespace zt::shared::npu
