#include "platform/windows/async_result.h"

#include <thread>

#include "base/time_limit.h"

namespace zt::telemetry::collector::performancesamples::platform {
namespace {

using Microsoft::WRL::ComPtr;

constexpr std::chrono::milliseconds kPollInterval{5};

// An operation that did not complete and gives no error of its own was cancelled by somebody else.
HRESULT ErrorOf(abi::IAsyncInfo& info) {
  HRESULT error = S_OK;
  const HRESULT asked = info.get_ErrorCode(&error);
  if (FAILED(asked)) return asked;
  return FAILED(error) ? error : E_ABORT;
}

}  // namespace

// The state is asked for again and again: a handler of ours could still be called after we stopped waiting, and would
// have to outlive this module.
HRESULT WaitFor(IUnknown& operation, std::chrono::milliseconds limit) {
  ComPtr<abi::IAsyncInfo> info;
  const HRESULT found = operation.QueryInterface(abi::kAsyncInfoId, reinterpret_cast<void**>(info.GetAddressOf()));
  if (FAILED(found)) return found;
  const base::TimeLimit time(limit);
  while (true) {
    abi::AsyncState state = abi::AsyncState::kStarted;
    const HRESULT asked = info->get_Status(&state);
    if (FAILED(asked)) return asked;
    if (state == abi::AsyncState::kCompleted) return S_OK;
    if (state != abi::AsyncState::kStarted) return ErrorOf(*info.Get());
    if (time.IsOver()) break;
    std::this_thread::sleep_for(kPollInterval);
  }
  info->Cancel();
  return base::kTimedOut;
}

}  // namespace zt::telemetry::collector::performancesamples::platform
