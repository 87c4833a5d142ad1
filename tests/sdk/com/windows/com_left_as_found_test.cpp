#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <memory>

#include "support/windows/com_thread.h"
#include "support/wmi_namespace.h"
#include "zt/shared/wmi/wmi_client.h"
#include "zt/shared/ztbios/private_bios_wmi.h"

// The libraries run on a host's thread: what the host decided about COM must hold before and after, and whatever it
// decided, they must work.
namespace zt::tests {
namespace {

using shared::wmi::WMIClient;
using shared::ztbios::PrivateBiosWmi;

constexpr wchar_t kMemoryQuery[] = L"SELECT TotalPhysicalMemory FROM Win32_ComputerSystem";

void ExpectQueryWorks(WMIClient& client) {
  EXPECT_EQ(client.ExecQuery(kMemoryQuery), 0);
  EXPECT_TRUE(client.Next());
  std::uint64_t memory = 0;
  EXPECT_EQ(client.GetValue(L"TotalPhysicalMemory", memory), 0);
  EXPECT_GT(memory, 0U);
}

void SendFirmwareCommand() {
  std::array<std::uint8_t, 4> input{};
  std::array<std::uint8_t, 128> output{};
  std::uint32_t return_code = 0;
  EXPECT_NE(PrivateBiosWmi().ExecuteCommand(1, 40, 4, input.data(), 128, output.data(), &return_code), 0);
}

TEST(ComLeftAsFoundTest, AThreadWithoutComHasNoneAfterAClient) {
  OnFreshThread([] {
    ASSERT_EQ(CurrentApartment(), std::nullopt);
    {
      WMIClient client(tests::kWmiNamespace);
      ExpectQueryWorks(client);
      EXPECT_EQ(CurrentApartment(), APTTYPE_MTA);
    }
    EXPECT_EQ(CurrentApartment(), std::nullopt);
  });
}

TEST(ComLeftAsFoundTest, AThreadWithoutComHasNoneAfterAFailedConnection) {
  OnFreshThread([] {
    EXPECT_NE(WMIClient(tests::kNoWmiNamespace).ExecQuery(kMemoryQuery), 0);
    EXPECT_EQ(CurrentApartment(), std::nullopt);
  });
}

TEST(ComLeftAsFoundTest, ASingleThreadedApartmentStaysAndQueriesWork) {
  OnThreadWithApartment(COINIT_APARTMENTTHREADED, [] {
    const std::optional<APTTYPE> before = CurrentApartment();
    ASSERT_TRUE(before == APTTYPE_STA || before == APTTYPE_MAINSTA);
    {
      WMIClient client(tests::kWmiNamespace);
      ExpectQueryWorks(client);
      EXPECT_EQ(CurrentApartment(), before);
    }
    EXPECT_EQ(CurrentApartment(), before);
  });
}

TEST(ComLeftAsFoundTest, AMultithreadedApartmentStaysAndQueriesWork) {
  OnThreadWithApartment(COINIT_MULTITHREADED, [] {
    {
      WMIClient client(tests::kWmiNamespace);
      ExpectQueryWorks(client);
    }
    EXPECT_EQ(CurrentApartment(), APTTYPE_MTA);
  });
}

TEST(ComLeftAsFoundTest, TheLeavingOfTheHostIsTheLastOne) {
  OnFreshThread([] {
    ASSERT_EQ(::CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK);
    EXPECT_EQ(WMIClient(tests::kWmiNamespace).ExecQuery(kMemoryQuery), 0);
    ::CoUninitialize();
    EXPECT_EQ(CurrentApartment(), std::nullopt);
  });
}

TEST(ComLeftAsFoundTest, ClientsMayOverlap) {
  OnFreshThread([] {
    auto first = std::make_unique<WMIClient>(tests::kWmiNamespace);
    auto second = std::make_unique<WMIClient>(tests::kWmiNamespace);
    ExpectQueryWorks(*first);
    first.reset();
    ExpectQueryWorks(*second);
    second.reset();
    EXPECT_EQ(CurrentApartment(), std::nullopt);
  });
}

TEST(ComLeftAsFoundTest, ManyClientsLeaveNothingBehind) {
  OnFreshThread([] {
    for (int i = 0; i < 20; ++i) {
      WMIClient client(tests::kWmiNamespace);
      ExpectQueryWorks(client);
    }
    EXPECT_EQ(CurrentApartment(), std::nullopt);
  });
}

TEST(ComLeftAsFoundTest, AFirmwareCommandLeavesAThreadWithoutCom) {
  OnFreshThread([] {
    SendFirmwareCommand();
    EXPECT_EQ(CurrentApartment(), std::nullopt);
  });
}

TEST(ComLeftAsFoundTest, AFirmwareCommandLeavesASingleThreadedApartment) {
  OnThreadWithApartment(COINIT_APARTMENTTHREADED, [] {
    const std::optional<APTTYPE> before = CurrentApartment();
    SendFirmwareCommand();
    EXPECT_EQ(CurrentApartment(), before);
  });
}

TEST(ComLeftAsFoundTest, TheHostCanStillSetTheSecurityOfTheProcess) {
  OnThreadWithApartment(COINIT_MULTITHREADED, [] {
    WMIClient client(tests::kWmiNamespace);
    ExpectQueryWorks(client);
    EXPECT_EQ(::CoInitializeSecurity(nullptr, -1, nullptr, nullptr, RPC_C_AUTHN_LEVEL_DEFAULT,
                                     RPC_C_IMP_LEVEL_IMPERSONATE, nullptr, EOAC_NONE, nullptr),
              S_OK);
  });
}

}  // namespace
}  // namespace zt::tests
