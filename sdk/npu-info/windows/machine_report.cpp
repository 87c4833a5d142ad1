#include "machine_report.h"

#include <zt/com/com_handles.h>

#include <vector>

#include "base/loaded_library.h"
#include "npu_report.h"
#include "windows/device_instance.h"
#include "windows/dxcore_npus.h"
#include "windows/kernel_figures.h"

namespace zt::shared::npu {
namespace {

using com::ComPtr;
using dxcore::IAdapterFactory;

// S_OK without a factory where Windows has no DXCore.
HRESULT MakeFactory(const base::LoadedLibrary& library, ComPtr<IAdapterFactory>& factory) {
  auto* const create = dxcore::Functions::In(library).Get<"DXCoreCreateAdapterFactory">();
  if (create == nullptr) return S_OK;
  void* made = nullptr;
  const HRESULT status = create(dxcore::kFactoryId, &made);
  if (SUCCEEDED(status)) com::TakeOver(factory, static_cast<IAdapterFactory*>(made));
  return status;
}

// Two NPUs of one model that the system has no devices for share an identifier.
std::string NameDevice(const DxcoreNpu& npu) {
  const std::string instance = FindDeviceInstance(npu.luid);
  return !instance.empty() ? instance : HardwareId(npu.parts);
}

}  // namespace

MachineReport ReadMachineReport() {
  const auto dxcore_library = base::LoadedLibrary::OfSystem(dxcore::kLibrary);
  const auto kernel_library = base::LoadedLibrary::OfSystem(kernel::kLibrary);
  ComPtr<IAdapterFactory> factory;
  const HRESULT status = MakeFactory(dxcore_library, factory);
  if (!factory) return {{}, status};
  const kernel::Calls calls = kernel::Calls::In(kernel_library);
  std::vector<Npu> npus;
  const DxcoreNpus listed = ReadDxcoreNpus(*factory.Get());
  for (const DxcoreNpu& found : listed.npus) {
    Npu& npu = npus.emplace_back();
    npu.device_id = NameDevice(found);
    npu.memory_size = found.memory_size;
    ReadKernelFigures(calls, found.luid, npu);
  }
  return {ComposeReport(npus), listed.status};
}

}  // namespace zt::shared::npu
