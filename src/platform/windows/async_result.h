#pragma once

#include <wrl/client.h>

#include <chrono>

#include "platform/windows/sensor_interfaces.h"

namespace zt::telemetry::collector::performancesamples::platform {

/// Waits until the asynchronous operation is done, at most `limit`, and cancels it then. Returns S_OK when it
/// completed, `base::kTimedOut` at the limit, else the error that it ended with.
HRESULT WaitFor(IUnknown& operation, std::chrono::milliseconds limit);

/// Starts an operation by `start`, which takes where to put it, waits for it as `WaitFor` does, and takes its result:
/// null where there is no such thing.
template <typename Result, typename Start>
HRESULT Await(const Start& start, std::chrono::milliseconds limit, Microsoft::WRL::ComPtr<Result>& result) {
  Microsoft::WRL::ComPtr<abi::IAsyncOperation<Result>> operation;
  const HRESULT started = start(operation.GetAddressOf());
  if (FAILED(started)) return started;
  if (operation.Get() == nullptr) return E_POINTER;
  const HRESULT waited = WaitFor(*operation.Get(), limit);
  return FAILED(waited) ? waited : operation->GetResults(result.ReleaseAndGetAddressOf());
}

}  // namespace zt::telemetry::collector::performancesamples::platform
