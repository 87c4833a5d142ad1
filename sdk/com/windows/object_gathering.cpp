#include "zt/com/object_gathering.h"

#include <array>
#include <chrono>
#include <optional>

namespace zt::com {
namespace {

using Objects = std::vector<ComPtr<IWbemClassObject>>;

// One call asks for so many objects: a call for each would cost a process change for each.
constexpr ULONG kBatch = 64;

// One call of Next. Room is made first, so that no failure comes between receiving an object and owning it.
HRESULT GatherBatch(IEnumWbemClassObject& enumerator, std::chrono::milliseconds wait, Objects& objects,
                    ULONG& received) {
  const std::size_t before = objects.size();
  objects.resize(before + kBatch);
  std::array<IWbemClassObject*, kBatch> batch{};
  const HRESULT status = enumerator.Next(static_cast<long>(wait.count()), kBatch, batch.data(), &received);
  for (std::size_t i = 0; i < received; ++i) TakeOver(objects[before + i], batch[i]);
  objects.resize(before + received);
  return status;
}

}  // namespace

HRESULT GatherObjects(IEnumWbemClassObject& enumerator, const WaitLimits& limits, Objects& objects) {
  return base::GatherWithin<std::chrono::steady_clock>(
      limits, [&](std::chrono::milliseconds wait) -> std::optional<HRESULT> {
        ULONG received = 0;
        const HRESULT status = GatherBatch(enumerator, wait, objects, received);
        if (FAILED(status)) return status;
        if (status == WBEM_S_FALSE) return S_OK;
        // Fewer objects than asked for came in time. Any is progress; none is a provider that is stuck.
        if (received == 0) return status == WBEM_S_TIMEDOUT ? base::kTimedOut : S_OK;
        return std::nullopt;
      });
}

}  // namespace zt::com
