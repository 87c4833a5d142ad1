#include "windows/dxcore_npus.h"

#include <zt/com/com_handles.h>

#include <algorithm>
#include <array>

namespace zt::shared::npu {
namespace {

using com::ComPtr;
using dxcore::IAdapter;
using dxcore::IAdapterFactory;
using dxcore::IAdapterList;
using dxcore::Property;

// Where NPUs are looked for. Newer versions of Windows list them by their kind, also those without a Direct3D driver;
// older ones only by what they can compute.
constexpr std::array<const GUID*, 3> kListedBy = {&dxcore::kNpu, &dxcore::kGenericMl, &dxcore::kCoreCompute};

template <typename T>
std::optional<T> Read(IAdapter& adapter, Property property) {
  if (!adapter.IsPropertySupported(property)) return std::nullopt;
  T value{};
  if (FAILED(adapter.GetProperty(property, sizeof(value), &value))) return std::nullopt;
  return value;
}

AdapterTraits ReadTraits(IAdapter& adapter) {
  return {
      .hardware = Read<bool>(adapter, Property::kIsHardware).value_or(false),
      .npu = adapter.IsAttributeSupported(dxcore::kNpu),
      .gpu = adapter.IsAttributeSupported(dxcore::kGpu),
      .compute_accelerator = adapter.IsAttributeSupported(dxcore::kComputeAccelerator),
      .generic_ml = adapter.IsAttributeSupported(dxcore::kGenericMl),
      .core_compute = adapter.IsAttributeSupported(dxcore::kCoreCompute),
      .graphics = adapter.IsAttributeSupported(dxcore::kGraphics),
  };
}

// All or nothing: a part of the memory would look like the whole.
std::optional<MemoryBytes> ReadMemorySize(IAdapter& adapter) {
  const auto on_adapter = Read<std::uint64_t>(adapter, Property::kDedicatedAdapterMemory);
  const auto set_aside = Read<std::uint64_t>(adapter, Property::kDedicatedSystemMemory);
  const auto shared = Read<std::uint64_t>(adapter, Property::kSharedSystemMemory);
  if (!on_adapter || !set_aside || !shared) return std::nullopt;
  return MemoryBytes{*on_adapter + *set_aside, *shared};
}

bool IsSame(const LUID& left, const LUID& right) {
  return left.LowPart == right.LowPart && left.HighPart == right.HighPart;
}

// An adapter that went away since it was listed answers nothing.
void AddIfNpu(IAdapter& adapter, std::vector<DxcoreNpu>& npus) {
  const auto luid = Read<LUID>(adapter, Property::kLuid);
  if (!luid || !IsNpu(ReadTraits(adapter))) return;
  const bool is_known =
      std::any_of(npus.begin(), npus.end(), [&luid](const DxcoreNpu& npu) { return IsSame(npu.luid, *luid); });
  if (is_known) return;
  npus.push_back({*luid, Read<HardwareParts>(adapter, Property::kHardwareParts).value_or(HardwareParts()),
                  ReadMemorySize(adapter)});
}

// A version of Windows that does not know an attribute refuses it: nothing has it then.
bool IsFailure(HRESULT status) {
  return FAILED(status) && status != E_INVALIDARG;
}

HRESULT ListAdapters(IAdapterFactory& factory, const GUID& attribute, ComPtr<IAdapterList>& adapters) {
  void* list = nullptr;
  const HRESULT status = factory.CreateAdapterList(1, &attribute, dxcore::kAdapterListId, &list);
  if (SUCCEEDED(status)) com::TakeOver(adapters, static_cast<IAdapterList*>(list));
  return status;
}

ComPtr<IAdapter> AdapterAt(IAdapterList& list, std::uint32_t index) {
  void* adapter = nullptr;
  const HRESULT status = list.GetAdapter(index, dxcore::kAdapterId, &adapter);
  ComPtr<IAdapter> owner;
  if (SUCCEEDED(status)) com::TakeOver(owner, static_cast<IAdapter*>(adapter));
  return owner;
}

}  // namespace

DxcoreNpus ReadDxcoreNpus(IAdapterFactory& factory) {
  DxcoreNpus found;
  for (const GUID* attribute : kListedBy) {
    ComPtr<IAdapterList> list;
    const HRESULT status = ListAdapters(factory, *attribute, list);
    if (IsFailure(status) && SUCCEEDED(found.status)) found.status = status;
    const std::uint32_t count = list ? list->GetAdapterCount() : 0;
    for (std::uint32_t i = 0; i < count; ++i) {
      const ComPtr<IAdapter> adapter = AdapterAt(*list.Get(), i);
      if (adapter) AddIfNpu(*adapter.Get(), found.npus);
    }
  }
  return found;
}

}  // namespace zt::shared::npu
