#include "base/windows/device_control.h"

#include <windows.h>
#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <string>

// Requests to devices, with a pipe in the place of a battery: it answers some at once, and others when somebody
// connects to it.
namespace zt::tests {
namespace {

using namespace std::chrono_literals;
using base::ControlOutcome;
using base::OpenDevice;
using base::SendControl;
using base::UniqueHandle;

constexpr std::uint32_t kListen = 0x110008;  // FSCTL_PIPE_LISTEN: done when a client has connected
constexpr std::uint32_t kPeek = 0x11400C;    // FSCTL_PIPE_PEEK: state, bytes to read, messages, length, then the bytes
constexpr std::uint32_t kNoSuchCode = 0x11FFFC;
constexpr std::size_t kPeekHeader = 16;

class DeviceControlTest : public testing::Test {
 protected:
  DeviceControlTest()
      : path_(LR"(\\.\pipe\zt-device-control-)" + std::to_wstring(::GetCurrentProcessId())),
        device_(::CreateNamedPipeW(path_.c_str(), PIPE_ACCESS_DUPLEX | FILE_FLAG_OVERLAPPED, PIPE_TYPE_BYTE, 1, 4096,
                                   4096, 0, nullptr)) {}

  UniqueHandle Connect() const {
    return UniqueHandle(
        ::CreateFileW(path_.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr));
  }

  std::wstring path_;
  UniqueHandle device_;
};

TEST_F(DeviceControlTest, GivesTheAnswerAndItsSize) {
  const UniqueHandle client = Connect();
  DWORD written = 0;
  ASSERT_NE(::WriteFile(client.get(), "abc", 3, &written, nullptr), FALSE);
  std::array<std::byte, 64> answer{};
  const ControlOutcome outcome = SendControl(device_.get(), kPeek, {}, answer, 1s);
  EXPECT_EQ(outcome.error, static_cast<std::uint32_t>(ERROR_SUCCESS));
  EXPECT_EQ(outcome.size, kPeekHeader + 3);
  EXPECT_EQ(answer[kPeekHeader], std::byte{'a'});
  EXPECT_EQ(answer[kPeekHeader + 2], std::byte{'c'});
}

TEST_F(DeviceControlTest, GivesTheErrorOfARequestThatTheDeviceDoesNotKnow) {
  const ControlOutcome outcome = SendControl(device_.get(), kNoSuchCode, {}, {}, 1s);
  EXPECT_NE(outcome.error, static_cast<std::uint32_t>(ERROR_SUCCESS));
  EXPECT_NE(outcome.error, static_cast<std::uint32_t>(ERROR_TIMEOUT));
  EXPECT_EQ(outcome.size, 0U);
}

TEST_F(DeviceControlTest, ARequestWithoutAnAnswerIsCancelledAtItsLimit) {
  const auto begin = std::chrono::steady_clock::now();
  const ControlOutcome outcome = SendControl(device_.get(), kListen, {}, {}, 100ms);
  const auto took = std::chrono::steady_clock::now() - begin;
  EXPECT_EQ(outcome.error, static_cast<std::uint32_t>(ERROR_TIMEOUT));
  EXPECT_GE(took, 90ms);
  EXPECT_LT(took, 900ms) << "the driver gives a cancelled request up at once";
}

TEST_F(DeviceControlTest, ACancelledRequestDoesNotKeepTheNextOneFromAnAnswer) {
  ASSERT_EQ(SendControl(device_.get(), kListen, {}, {}, 10ms).error, static_cast<std::uint32_t>(ERROR_TIMEOUT));
  const UniqueHandle client = Connect();
  ASSERT_NE(client.get(), INVALID_HANDLE_VALUE);
  std::array<std::byte, 64> answer{};
  EXPECT_EQ(SendControl(device_.get(), kPeek, {}, answer, 1s).error, static_cast<std::uint32_t>(ERROR_SUCCESS));
}

TEST_F(DeviceControlTest, ADriverThatRanOutOfTimeIsNotAskedAgain) {
  const base::ControlDevice ask = base::AskDevice(device_.get(), 50ms, base::TimeLimit(10s));
  EXPECT_EQ(ask(kListen, {}, {}).error, base::kRequestTimedOut);
  const UniqueHandle client = Connect();
  std::array<std::byte, 64> answer{};
  EXPECT_EQ(ask(kPeek, {}, answer).error, base::kRequestTimedOut);
  EXPECT_EQ(SendControl(device_.get(), kPeek, {}, answer, 1s).error, static_cast<std::uint32_t>(ERROR_SUCCESS));
}

TEST_F(DeviceControlTest, ADriverIsNotAskedWhenTheTimeOfAllIsOver) {
  const UniqueHandle client = Connect();
  std::array<std::byte, 64> answer{};
  EXPECT_EQ(base::AskDevice(device_.get(), 1s, base::TimeLimit(0s))(kPeek, {}, answer).error, base::kRequestTimedOut);
  EXPECT_EQ(base::AskDevice(device_.get(), 1s, base::TimeLimit(10s))(kPeek, {}, answer).error,
            static_cast<std::uint32_t>(ERROR_SUCCESS));
}

TEST(DeviceOpeningTest, ADeviceThatIsNotThereIsNull) {
  EXPECT_EQ(OpenDevice(LR"(\\?\acpi#pnp0c0a#no-such-battery)"), nullptr);
}

TEST(DeviceOpeningTest, ADeviceThatIsThereCanBeAsked) {
  const UniqueHandle device = OpenDevice(LR"(\\.\NUL)");
  ASSERT_NE(device, nullptr);
  EXPECT_NE(SendControl(device.get(), kNoSuchCode, {}, {}, 1s).error, static_cast<std::uint32_t>(ERROR_SUCCESS));
}

}  // namespace
}  // namespace zt::tests
