#include "platform/windows/wlan_session.h"

#include <windows.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <new>
#include <string>

#include "support/fake_library.h"

// How the service's answers are read and given back, over a service of functions that this file makes.
namespace zt::tests {
namespace {

using namespace telemetry::collector::performancesamples::platform;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr GUID kGuid = {0xABCDEFAB, 0x0001, 0x4000, {0x80, 0, 0, 0, 0, 0, 0, 0x0F}};
constexpr wchar_t kGuidText[] = L"{ABCDEFAB-0001-4000-8000-00000000000F}";
constexpr DWORD kRefused = ERROR_ACCESS_DENIED;

// What the service does and what became of it. The functions are plain ones: their state is the file's.
struct Service {
  DWORD open = 0;
  DWORD enumerate = 0;
  DWORD query = 0;
  DWORD list = 0;
  DWORD profile = 0;
  DWORD items = 2;
  bool gives_nothing = false;
  bool gives_too_little = false;
  std::wstring xml = L"<xml/>";
  int handed_out = 0;
  int handles = 0;
  GUID asked{};
  DWORD flags_asked = 0;
};
Service service;

template <typename T>
T* HandOut(std::size_t bytes) {
  ++service.handed_out;
  return static_cast<T*>(std::calloc(1, bytes));
}

DWORD WINAPI OpenHandle(DWORD version, void*, DWORD* negotiated, HANDLE* handle) {
  EXPECT_EQ(version, 2U);
  if (service.open != 0) return service.open;
  ++service.handles;
  *negotiated = version;
  *handle = &service;
  return 0;
}

DWORD WINAPI CloseHandleOf(HANDLE handle, void*) {
  EXPECT_EQ(handle, &service);
  --service.handles;
  return 0;
}

DWORD WINAPI EnumInterfaces(HANDLE, void*, WLAN_INTERFACE_INFO_LIST** list) {
  if (service.enumerate != 0) return service.enumerate;
  if (service.gives_nothing) return 0;
  *list = HandOut<WLAN_INTERFACE_INFO_LIST>(sizeof(WLAN_INTERFACE_INFO_LIST) + 8 * sizeof(WLAN_INTERFACE_INFO));
  (*list)->dwNumberOfItems = service.items;
  for (DWORD i = 0; i < service.items; ++i) {
    (*list)->InterfaceInfo[i].InterfaceGuid = kGuid;
    (*list)->InterfaceInfo[i].InterfaceGuid.Data2 = static_cast<unsigned short>(i + 1);
  }
  return 0;
}

DWORD WINAPI QueryInterface(HANDLE, const GUID* guid, WLAN_INTF_OPCODE question, void*, DWORD* size, void** data,
                            WLAN_OPCODE_VALUE_TYPE*) {
  service.asked = *guid;
  if (service.query != 0) return service.query;
  if (service.gives_nothing) return 0;
  if (question == wlan_intf_opcode_channel_number) {
    *data = HandOut<ULONG>(sizeof(ULONG));
    *static_cast<ULONG*>(*data) = 149;
    *size = service.gives_too_little ? 2 : sizeof(ULONG);
    return 0;
  }
  auto* const connection = HandOut<WLAN_CONNECTION_ATTRIBUTES>(sizeof(WLAN_CONNECTION_ATTRIBUTES));
  connection->isState = wlan_interface_state_connected;
  std::wmemset(connection->strProfileName, L'n', 256);  // without an end
  connection->wlanAssociationAttributes.dot11PhyType = static_cast<DOT11_PHY_TYPE>(11);
  connection->wlanAssociationAttributes.wlanSignalQuality = 87;
  connection->wlanAssociationAttributes.ulRxRate = 1'200'000;
  connection->wlanAssociationAttributes.ulTxRate = 1'100'000;
  *data = connection;
  *size = service.gives_too_little ? 8 : sizeof(WLAN_CONNECTION_ATTRIBUTES);
  return 0;
}

DWORD WINAPI GetProfileList(HANDLE, const GUID* guid, void*, WLAN_PROFILE_INFO_LIST** list) {
  service.asked = *guid;
  if (service.list != 0) return service.list;
  if (service.gives_nothing) return 0;
  *list = HandOut<WLAN_PROFILE_INFO_LIST>(sizeof(WLAN_PROFILE_INFO_LIST) + 8 * sizeof(WLAN_PROFILE_INFO));
  (*list)->dwNumberOfItems = service.items;
  WLAN_PROFILE_INFO* const first = (*list)->ProfileInfo;
  for (DWORD i = 0; i < service.items; ++i) std::wmemset(first[i].strProfileName, L'a' + static_cast<wchar_t>(i), 3);
  return 0;
}

DWORD WINAPI GetProfile(HANDLE, const GUID* guid, const wchar_t* name, void*, wchar_t** xml, DWORD* flags, DWORD*) {
  service.asked = *guid;
  service.flags_asked = *flags;
  EXPECT_STREQ(name, L"Home");
  if (service.profile != 0) return service.profile;
  if (service.gives_nothing) return 0;
  *xml = HandOut<wchar_t>((service.xml.size() + 1) * sizeof(wchar_t));
  std::wmemcpy(*xml, service.xml.c_str(), service.xml.size());
  *flags = kWlanProfileGroupPolicy;
  return 0;
}

void WINAPI FreeMemory(void* memory) {
  EXPECT_NE(memory, nullptr);
  --service.handed_out;
  std::free(memory);
}

class WlanSessionTest : public testing::Test {
 protected:
  WlanSessionTest() { service = {}; }
  ~WlanSessionTest() override {
    EXPECT_EQ(service.handed_out, 0) << "the service's memory was not given back";
    EXPECT_EQ(service.handles, 0) << "the service's handle was not closed";
  }

  FakeLibrary<WlanFunctions> library_ = FakeLibrary<WlanFunctions>()
                                            .Export<"WlanOpenHandle">(OpenHandle)
                                            .Export<"WlanCloseHandle">(CloseHandleOf)
                                            .Export<"WlanEnumInterfaces">(EnumInterfaces)
                                            .Export<"WlanQueryInterface">(QueryInterface)
                                            .Export<"WlanGetProfileList">(GetProfileList)
                                            .Export<"WlanGetProfile">(GetProfile)
                                            .Export<"WlanFreeMemory">(FreeMemory);
  WlanFunctions functions_ = WlanFunctions::In(library_);
};

TEST_F(WlanSessionTest, ReadsTheInterfaces) {
  const WlanSession session(functions_);
  ASSERT_TRUE(session.IsOpen());
  EXPECT_THAT(session.Interfaces().value(),
              ElementsAre(kGuidText, std::wstring(L"{ABCDEFAB-0002-4000-8000-00000000000F}")));
}

TEST_F(WlanSessionTest, ReadsTheLink) {
  const WlanSession session(functions_);
  const WlanConnection link = session.CurrentConnection(kGuidText).value();
  EXPECT_TRUE(IsEqualGUID(service.asked, kGuid));
  EXPECT_EQ(link.state, kWlanStateConnected);
  EXPECT_EQ(link.profile_name, std::wstring(256, L'n'));
  EXPECT_EQ(link.phy_type, 11U);
  EXPECT_EQ(link.signal_quality, 87U);
  EXPECT_EQ(link.receive_rate, 1'200'000U);
  EXPECT_EQ(link.transmit_rate, 1'100'000U);
}

TEST_F(WlanSessionTest, ReadsTheProfilesAndTheChannel) {
  const WlanSession session(functions_);
  EXPECT_THAT(session.ProfileNames(kGuidText).value(), ElementsAre(L"aaa", std::wstring(L"bbb")));
  EXPECT_TRUE(IsEqualGUID(service.asked, kGuid));
  EXPECT_EQ(session.Channel(kGuidText), 149U);
}

TEST_F(WlanSessionTest, ReadsAProfileWithoutItsKeys) {
  const WlanSession session(functions_);
  const WlanProfile profile = session.Profile(kGuidText, L"Home").value();
  EXPECT_EQ(profile.xml, L"<xml/>");
  EXPECT_EQ(profile.flags, kWlanProfileGroupPolicy);
  EXPECT_EQ(service.flags_asked, 0U);
}

TEST_F(WlanSessionTest, AServiceThatDoesNotOpenIsNotClosed) {
  service.open = kRefused;
  const WlanSession session(functions_);
  EXPECT_FALSE(session.IsOpen());
  EXPECT_EQ(session.Status(), kRefused);
}

TEST_F(WlanSessionTest, ALibraryThatLacksAFunctionIsNotOpened) {
  library_.Withdraw<"WlanGetProfile">();
  functions_ = WlanFunctions::In(library_);
  EXPECT_FALSE(WlanSession(functions_).IsOpen());
  const WlanFunctions none;
  const WlanSession without_library(none);
  EXPECT_FALSE(without_library.IsOpen());
  EXPECT_EQ(without_library.Status(), static_cast<DWORD>(ERROR_SUCCESS)) << "that there is none is no failure";
}

TEST_F(WlanSessionTest, EachRefusalIsAnAbsentAnswer) {
  service.enumerate = service.query = service.list = service.profile = kRefused;
  const WlanSession session(functions_);
  EXPECT_FALSE(session.Interfaces().has_value());
  EXPECT_FALSE(session.CurrentConnection(kGuidText).has_value());
  EXPECT_FALSE(session.ProfileNames(kGuidText).has_value());
  EXPECT_FALSE(session.Profile(kGuidText, L"Home").has_value());
  EXPECT_FALSE(session.Channel(kGuidText).has_value());
}

TEST_F(WlanSessionTest, ASuccessThatGivesNothingIsAnAbsentAnswer) {
  service.gives_nothing = true;
  const WlanSession session(functions_);
  EXPECT_THAT(session.Interfaces().value(), IsEmpty());
  EXPECT_FALSE(session.CurrentConnection(kGuidText).has_value());
  EXPECT_FALSE(session.ProfileNames(kGuidText).has_value());
  EXPECT_FALSE(session.Profile(kGuidText, L"Home").has_value());
  EXPECT_FALSE(session.Channel(kGuidText).has_value());
}

TEST_F(WlanSessionTest, AnAnswerThatIsTooShortIsNotRead) {
  service.gives_too_little = true;
  const WlanSession session(functions_);
  EXPECT_FALSE(session.CurrentConnection(kGuidText).has_value());
  EXPECT_FALSE(session.Channel(kGuidText).has_value());
}

TEST_F(WlanSessionTest, EmptyListsAreAnswers) {
  service.items = 0;
  const WlanSession session(functions_);
  EXPECT_THAT(session.Interfaces().value(), IsEmpty());
  EXPECT_THAT(session.ProfileNames(kGuidText).value(), IsEmpty());
}

}  // namespace
}  // namespace zt::tests
