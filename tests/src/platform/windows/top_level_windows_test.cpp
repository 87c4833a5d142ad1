#include "platform/top_level_windows.h"

#include <windows.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <future>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <type_traits>

namespace zt::telemetry::collector::performancesamples::platform {
namespace {

struct WindowDestroyer {
  void operator()(HWND window) const { ::DestroyWindow(window); }
};
using Window = std::unique_ptr<std::remove_pointer_t<HWND>, WindowDestroyer>;

Window Create(const wchar_t* title, DWORD style, HWND owner = nullptr) {
  return Window(::CreateWindowExW(0, L"STATIC", title, style, 0, 0, 100, 100, owner, nullptr, nullptr, nullptr));
}

std::vector<TopLevelWindow> OfThisProcess() {
  return TopLevelWindowsOf(::GetCurrentProcessId());
}

// The first window of this process with this text.
std::optional<TopLevelWindow> Find(const std::wstring& text) {
  for (const TopLevelWindow& window : OfThisProcess()) {
    if (window.text == text) return window;
  }
  return std::nullopt;
}

// The system may add invisible windows of its own, and tells none from another.
std::size_t VisibleOnesWithoutAText() {
  return static_cast<std::size_t>(std::ranges::count_if(
      OfThisProcess(), [](const TopLevelWindow& window) { return window.visible && window.text.empty(); }));
}

// The windows of this process. A system without a display, like Wine in a container, makes no window, and then has none
// to tell of.
class TopLevelWindowsTest : public testing::Test {
 protected:
  void SetUp() override {
    if (Create(L"probe", WS_OVERLAPPED)) return;
    EXPECT_TRUE(OfThisProcess().empty());
    GTEST_SKIP() << "this system makes no windows";
  }
};

TEST(WindowlessProcessTest, HasNoTopLevelWindows) {
  EXPECT_TRUE(OfThisProcess().empty());
}

TEST_F(TopLevelWindowsTest, AVisibleWindowTellsItsText) {
  const Window window = Create(L"Briefe \u2013 \u624b\u7d19", WS_OVERLAPPEDWINDOW | WS_VISIBLE);
  const auto found = Find(L"Briefe \u2013 \u624b\u7d19");
  ASSERT_TRUE(found);
  EXPECT_TRUE(found->visible);
  EXPECT_FALSE(found->has_owner);
}

TEST_F(TopLevelWindowsTest, AHiddenWindowIsNotVisible) {
  const Window window = Create(L"hidden", WS_OVERLAPPEDWINDOW);
  const auto found = Find(L"hidden");
  ASSERT_TRUE(found);
  EXPECT_FALSE(found->visible);
}

TEST_F(TopLevelWindowsTest, AnOwnedWindowHasAnOwner) {
  const Window owner = Create(L"owner", WS_OVERLAPPEDWINDOW);
  const Window owned = Create(L"owned", WS_POPUP, owner.get());
  ASSERT_TRUE(Find(L"owner") && Find(L"owned"));
  EXPECT_FALSE(Find(L"owner")->has_owner);
  EXPECT_TRUE(Find(L"owned")->has_owner);
}

TEST_F(TopLevelWindowsTest, ATextIsCutToItsRoom) {
  const Window window = Create(std::wstring(500, L'x').c_str(), WS_OVERLAPPEDWINDOW);
  EXPECT_TRUE(Find(std::wstring(155, L'x')));
}

TEST_F(TopLevelWindowsTest, AWindowWithoutATextHasAnEmptyOne) {
  const std::size_t before = VisibleOnesWithoutAText();
  const Window window = Create(L"", WS_POPUP | WS_VISIBLE);
  EXPECT_EQ(VisibleOnesWithoutAText(), before + 1);
}

TEST_F(TopLevelWindowsTest, TheWindowsOfOtherProcessesAreNotToldOf) {
  const Window window = Create(L"mine", WS_OVERLAPPEDWINDOW);
  EXPECT_TRUE(TopLevelWindowsOf(0xFFFF'FFF0).empty());
}

// A window whose thread does not answer.
TEST_F(TopLevelWindowsTest, DoesNotWaitForAWindowThatHasStoppedAnswering) {
  std::promise<void> shown;
  std::promise<void> seen;
  std::thread owner([&] {
    const Window window = Create(L"stuck", WS_OVERLAPPEDWINDOW | WS_VISIBLE);
    shown.set_value();
    seen.get_future().wait();  // handles no message
  });
  shown.get_future().wait();
  bool found = false;
  std::atomic<bool> searched = false;
  std::thread search([&] {
    found = Find(L"stuck").has_value();
    searched = true;
  });
  for (int i = 0; i < 500 && !searched; ++i) std::this_thread::sleep_for(std::chrono::milliseconds(10));
  const bool in_time = searched;
  seen.set_value();
  owner.join();
  search.join();
  EXPECT_TRUE(in_time);
  EXPECT_TRUE(found);
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples::platform
