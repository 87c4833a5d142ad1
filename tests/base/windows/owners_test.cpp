#include <gtest/gtest.h>

#include <string>

#include "base/windows/com_apartment.h"
#include "base/windows/device_list.h"
#include "base/windows/unique_handle.h"
#include "support/windows/com_thread.h"

// What owns things of the system gives each back once, and nothing that it does not own.
namespace zt::base {
namespace {

bool IsOpen(HANDLE handle) {
  DWORD flags = 0;
  return ::GetHandleInformation(handle, &flags) != FALSE;
}

TEST(UniqueHandleTest, ClosesWhatItOwns) {
  const HANDLE event = ::CreateEventW(nullptr, TRUE, FALSE, nullptr);
  {
    const UniqueHandle owner(event);
    EXPECT_TRUE(IsOpen(event));
  }
  EXPECT_FALSE(IsOpen(event));
}

TEST(UniqueHandleTest, AFileThatDidNotOpenIsNone) {
  EXPECT_EQ(OwnFile(INVALID_HANDLE_VALUE), nullptr);
  const UniqueHandle null_device = OwnFile(::CreateFileW(L"NUL", 0, 0, nullptr, OPEN_EXISTING, 0, nullptr));
  ASSERT_NE(null_device, nullptr);
  EXPECT_TRUE(IsOpen(null_device.get()));
}

TEST(DeviceListTest, AListThatThereIsNotIsNone) {
  EXPECT_EQ(OwnDevices(INVALID_HANDLE_VALUE), nullptr);
}

int leaves = 0;

void STDAPICALLTYPE CountLeave() {
  ++leaves;
}

int LeavesAfter(HRESULT initialisation) {
  leaves = 0;
  { const ComApartment apartment(initialisation, &CountLeave); }
  return leaves;
}

TEST(JoinedApartmentTest, EverySuccessIsTakenBackOnceAndARefusalIsNot) {
  EXPECT_EQ(LeavesAfter(S_OK), 1);
  EXPECT_EQ(LeavesAfter(S_FALSE), 1) << "initialised before, and counted all the same";
  EXPECT_EQ(LeavesAfter(RPC_E_CHANGED_MODE), 0);
  EXPECT_EQ(LeavesAfter(E_OUTOFMEMORY), 0);
}

TEST(JoinedApartmentTest, ASingleThreadedOneCanBeUsedThoughItIsRefused) {
  const ComApartment refused(RPC_E_CHANGED_MODE, &CountLeave);
  EXPECT_EQ(refused.Status(), RPC_E_CHANGED_MODE);
  EXPECT_EQ(refused.UseStatus(), S_OK);
  const ComApartment failed(E_OUTOFMEMORY, &CountLeave);
  EXPECT_EQ(failed.UseStatus(), E_OUTOFMEMORY);
}

TEST(JoinedApartmentTest, IsLeftAsItWasFound) {
  tests::OnFreshThread([] {
    {
      const ComApartment first;
      EXPECT_EQ(first.Status(), S_OK);
      {
        const ComApartment second;
        EXPECT_EQ(second.Status(), S_FALSE);
        EXPECT_EQ(second.UseStatus(), S_OK);
      }
      EXPECT_EQ(tests::CurrentApartment(), APTTYPE_MTA);
    }
    EXPECT_EQ(tests::CurrentApartment(), std::nullopt);
  });
}

}  // namespace
}  // namespace zt::base
