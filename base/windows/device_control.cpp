#include "base/windows/device_control.h"

#include <algorithm>
#include <memory>
#include <vector>

namespace zt::base {
namespace {

static_assert(kRequestTimedOut == ERROR_TIMEOUT);

// What the driver reads and writes while a request is under way.
struct Request {
  Request(std::span<const std::byte> from, std::size_t answer_size)
      : input(from.begin(), from.end()),
        output(answer_size),
        done(::CreateEventW(nullptr, /*bManualReset=*/TRUE, /*bInitialState=*/FALSE, nullptr)) {
    overlapped.hEvent = done.get();
  }

  std::vector<std::byte> input;
  std::vector<std::byte> output;
  UniqueHandle done;
  OVERLAPPED overlapped{};
};

bool WaitUntilDone(const Request& request, std::chrono::milliseconds limit) {
  return ::WaitForSingleObject(request.done.get(), static_cast<DWORD>(limit.count())) == WAIT_OBJECT_0;
}

ControlOutcome Collect(HANDLE device, Request& request, std::span<std::byte> output) {
  DWORD size = 0;
  if (::GetOverlappedResult(device, &request.overlapped, &size, /*bWait=*/FALSE) == FALSE) return {::GetLastError(), 0};
  const std::size_t answered = std::min<std::size_t>(size, output.size());
  std::copy_n(request.output.begin(), answered, output.begin());
  return {ERROR_SUCCESS, answered};
}

}  // namespace

UniqueHandle OpenDevice(const std::wstring& path, DWORD access) {
  return OwnFile(::CreateFileW(path.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                               FILE_FLAG_OVERLAPPED, nullptr));
}

ControlOutcome SendControl(HANDLE device, std::uint32_t code, std::span<const std::byte> input,
                           std::span<std::byte> output, std::chrono::milliseconds limit) {
  auto request = std::make_unique<Request>(input, output.size());
  if (request->done == nullptr) return {::GetLastError(), 0};
  const BOOL answered_at_once = ::DeviceIoControl(
      device, code, request->input.data(), static_cast<DWORD>(request->input.size()), request->output.data(),
      static_cast<DWORD>(request->output.size()), nullptr, &request->overlapped);
  if (answered_at_once == FALSE && ::GetLastError() != ERROR_IO_PENDING) return {::GetLastError(), 0};
  if (WaitUntilDone(*request, limit)) return Collect(device, *request, output);

  ::CancelIoEx(device, &request->overlapped);
  // The driver may still write to a request that it does not give up: that one is left to it.
  if (!WaitUntilDone(*request, kCancelLimit)) static_cast<void>(request.release());
  return {kRequestTimedOut, 0};
}

ControlDevice AskDevice(HANDLE device, std::chrono::milliseconds answer_limit, TimeLimit all) {
  const auto send = [device](std::uint32_t code, std::span<const std::byte> input, std::span<std::byte> output,
                             std::chrono::milliseconds limit) {
    return SendControl(device, code, input, output, limit);
  };
  return AskPatiently(send, answer_limit, all);
}

}  // namespace zt::base
