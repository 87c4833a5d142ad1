#include <windows.h>
#include <gtest/gtest.h>
#include <setupapi.h>

#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "base/loaded_library.h"
#include "messages/perf_messages.h"
#include "samplers/npu_msg.h"
#include "windows/device_instance.h"
#include "zt/shared/npu/npu_info.h"

// The NPUs of this very system, of which Wine has none.
namespace zt::tests {
namespace {

using base::LoadedLibrary;
using nlohmann::json;
using shared::npu::FindDeviceInstance;
using shared::npu::NPUInfo;
using telemetry::collector::performancesamples::NPUMsg;
using telemetry::collector::performancesamples::PerfMessages;

using AnyFunction = void();

std::string SystemsReport() {
  NPUInfo library;
  return library.GetNPUInfoAsJsonString();
}

TEST(SystemLibraryTest, AMissingLibraryHasNoFunctions) {
  const LoadedLibrary library = LoadedLibrary::OfSystem(L"zt-no-such-library.dll");
  EXPECT_EQ(library.Find<AnyFunction>("GetTickCount"), nullptr);
}

TEST(SystemLibraryTest, FindsAFunctionByItsNameOnly) {
  const LoadedLibrary library = LoadedLibrary::OfSystem(L"kernel32.dll");
  EXPECT_NE(library.Find<AnyFunction>("GetTickCount"), nullptr);
  EXPECT_EQ(library.Find<AnyFunction>("ZtNoSuchFunction"), nullptr);
}

TEST(SystemsNpusTest, WithoutDxcoreTheReportIsEmpty) {
  const LoadedLibrary dxcore = LoadedLibrary::OfSystem(L"dxcore.dll");
  if (dxcore.Find<AnyFunction>("DXCoreCreateAdapterFactory") != nullptr) GTEST_SKIP() << "this system has DXCore";
  EXPECT_EQ(SystemsReport(), "");
  EXPECT_EQ(NPUInfo().GetStatus(), 0) << "that there is none is no failure";
}

TEST(SystemsNpusTest, AReportNamesAsManyNpusAsItCounts) {
  const std::string report = SystemsReport();
  if (report.empty()) GTEST_SKIP() << "this system has no NPU";
  const json document = json::parse(report);
  ASSERT_EQ(document["npu_count"], document["npu_info"].size());
  for (const json& npu : document["npu_info"]) EXPECT_NE(npu.value("device_id", ""), "");
}

// An empty report is no document: whoever parses it throws.
TEST(SystemsNpusTest, WithoutAReportTheSamplerAddsNothingAndThrowsNothing) {
  if (!SystemsReport().empty()) GTEST_SKIP() << "this system has an NPU";
  PerfMessages::Init(nullptr, 50);
  EXPECT_NO_THROW(NPUMsg().PopulateStorageAndUploadProtos());
  EXPECT_EQ(PerfMessages::static_cdm_->hw_info().npus_info_size(), 0);
}

TEST(SystemsNpusTest, TheSamplerAddsEveryNpuOfTheReport) {
  const std::string report = SystemsReport();
  if (report.empty()) GTEST_SKIP() << "this system has no NPU";
  PerfMessages::Init(nullptr, 50);
  NPUMsg().PopulateStorageAndUploadProtos();
  std::vector<std::string> expected;
  for (const json& npu : json::parse(report)["npu_info"]) expected.push_back(npu.value("device_id", ""));
  std::vector<std::string> added;
  for (const auto& npu : PerfMessages::static_cdm_->hw_info().npus_info()) added.push_back(npu.device_id());
  EXPECT_EQ(added, expected);
}

/// An adapter of this system: its device, as the system's tools name it, and its number.
struct KnownAdapter {
  std::string instance;
  std::uint64_t luid = 0;
};

// Asked another way than the library does: by the class of display devices.
std::optional<KnownAdapter> FirstDisplayAdapter() {
  constexpr GUID kDisplayClass = {0x4D36E968, 0xE325, 0x11CE, {0xBF, 0xC1, 0x08, 0x00, 0x2B, 0xE1, 0x03, 0x18}};
  constexpr DEVPROPKEY kLuid = {{0x60B193CB, 0x5276, 0x4D0F, {0x96, 0xFC, 0xF1, 0x73, 0xAB, 0xAD, 0x3E, 0xC6}}, 2};
  const HDEVINFO devices = ::SetupDiGetClassDevsW(&kDisplayClass, nullptr, nullptr, DIGCF_PRESENT);
  std::optional<KnownAdapter> found;
  SP_DEVINFO_DATA device{};
  device.cbSize = sizeof(device);
  for (DWORD i = 0; !found && ::SetupDiEnumDeviceInfo(devices, i, &device) != FALSE; ++i) {
    KnownAdapter adapter;
    DEVPROPTYPE type = 0;
    char instance[256] = {};
    const bool has_luid =
        ::SetupDiGetDevicePropertyW(devices, &device, &kLuid, &type, reinterpret_cast<BYTE*>(&adapter.luid),
                                    sizeof(adapter.luid), nullptr, 0) != FALSE;
    if (!has_luid || ::SetupDiGetDeviceInstanceIdA(devices, &device, instance, sizeof(instance), nullptr) == FALSE) {
      continue;
    }
    adapter.instance = instance;
    found = adapter;
  }
  ::SetupDiDestroyDeviceInfoList(devices);
  return found;
}

TEST(DeviceInstanceTest, NamesTheDeviceOfAnAdapter) {
  const auto adapter = FirstDisplayAdapter();
  if (!adapter) GTEST_SKIP() << "no display device of this system tells its adapter";
  EXPECT_EQ(FindDeviceInstance({static_cast<DWORD>(adapter->luid), static_cast<LONG>(adapter->luid >> 32U)}),
            adapter->instance);
}

TEST(DeviceInstanceTest, AnAdapterThatIsNotThereHasNoDevice) {
  EXPECT_EQ(FindDeviceInstance({0x7FFFFFFF, 0x7FFFFFFF}), "");
}

}  // namespace
}  // namespace zt::tests
