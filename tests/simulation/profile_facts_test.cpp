#include <gmock/gmock.h>

#include <cmath>

#include "full_profile.h"
#include "profile_error.h"
#include "simulation/profile.h"
#include "support/status_codes.h"

// What is stated in a profile is a fact of the machine, key by key.
namespace zt::tests {
namespace {

using simulation::Answer;
using simulation::Failure;
using simulation::HingeOutcome;
using simulation::Machine;
using simulation::OptionalAnswer;
using simulation::WmiNull;
using simulation::WmiProperty;
using ::testing::ElementsAre;
using ::testing::Pair;

Machine FullMachine() {
  return simulation::ParseProfile(kFullProfile, "full.json");
}

Machine Parse(std::string_view json) {
  return simulation::ParseProfile(json, "p.json");
}

template <typename T>
OptionalAnswer<T> Plain(T value) {
  return Answer<T>(std::move(value));
}

template <typename T>
OptionalAnswer<T> Fails(std::int32_t status) {
  return Answer<T>(Failure{status});
}

TEST(ProfileFactsTest, AnEmptyProfileIsAMachineOnWhichNothingExists) {
  const Machine machine = Parse("{}");
  EXPECT_FALSE(machine.clock);
  EXPECT_FALSE(machine.smbios_serial_number);
  EXPECT_FALSE(machine.battery_flag);
  EXPECT_TRUE(machine.batteries.empty());
  EXPECT_FALSE(machine.sensors.hinge);
  EXPECT_FALSE(machine.sensors.orientation);
  EXPECT_TRUE(machine.wmi.classes.empty());
  EXPECT_TRUE(machine.private_bios.empty());
  EXPECT_FALSE(machine.nvml);
  EXPECT_FALSE(machine.adlx);
  EXPECT_TRUE(machine.registry.empty());
  EXPECT_EQ(machine.npu_report, "");
  EXPECT_TRUE(machine.storage_library.empty());
  EXPECT_FALSE(machine.session.last_input_tick_ms);
  EXPECT_TRUE(machine.processes.empty());
  EXPECT_FALSE(machine.network.manager);
  EXPECT_FALSE(machine.network.wlan);
  EXPECT_FALSE(machine.network.tcp_v4);
}

TEST(ProfileFactsTest, TheClockStandsAtItsMoment) {
  const Machine machine = FullMachine();
  EXPECT_EQ(machine.description, "Every key");
  EXPECT_EQ(machine.clock->utc_seconds, 1772893242);
  EXPECT_EQ(machine.clock->standard_offset_minutes, -180);
  EXPECT_EQ(machine.clock->local_offset_minutes, -120);
}

TEST(ProfileFactsTest, TheLocalOffsetIsTheStandardOneUnlessStated) {
  const Machine machine = Parse(R"({"clock": {"now": "2026-03-07T14:20:42Z", "standard_offset_minutes": 330}})");
  EXPECT_EQ(machine.clock->local_offset_minutes, 330);
}

TEST(ProfileFactsTest, AClockWithoutAMomentGoesOnInItsZone) {
  const Machine machine = Parse(R"({"clock": {"standard_offset_minutes": 330}})");
  ASSERT_TRUE(machine.clock);
  EXPECT_FALSE(machine.clock->utc_seconds);
}

TEST(ProfileFactsTest, ASerialNumberMayBeNullOrEmpty) {
  EXPECT_EQ(FullMachine().smbios_serial_number, "5CG0000009");
  EXPECT_EQ(Parse(R"({"smbios": {"serial_number": ""}})").smbios_serial_number, "");
  EXPECT_FALSE(Parse(R"({"smbios": {"serial_number": null}})").smbios_serial_number);
  EXPECT_FALSE(Parse(R"({"smbios": null})").smbios_serial_number);
}

TEST(ProfileFactsTest, ABatteryHasEachOfItsFigures) {
  const Machine machine = FullMachine();
  EXPECT_EQ(machine.battery_flag, 9);
  ASSERT_EQ(machine.batteries.size(), 2U);
  EXPECT_FALSE(machine.batteries[0]);
  const simulation::Battery& battery = machine.batteries[1].value();
  EXPECT_EQ(battery.serial_number, "SN-1");
  EXPECT_EQ(battery.ct_number, "CT-1");
  EXPECT_EQ(battery.design_voltage_mv, -1);
  EXPECT_EQ(battery.further_capacity_mwh, 2);
  EXPECT_EQ(battery.full_charge_capacity_mwh, 3);
  EXPECT_EQ(battery.full_charge_percent, 94.5F);
  EXPECT_EQ(battery.remaining_capacity_mwh, 4294967295U);
  EXPECT_EQ(battery.remaining_percent, 75.25F);
  EXPECT_EQ(battery.max_error_percent, 4U);
  EXPECT_EQ(battery.cycle_count, 5U);
  EXPECT_EQ(battery.temperature_celsius, -6);
  EXPECT_EQ(battery.voltage_mv, 7);
  EXPECT_EQ(battery.electric_current, 8U);
  EXPECT_EQ(battery.status_code, -9);
  EXPECT_TRUE(battery.on_ac_not_charging);
  EXPECT_TRUE(battery.discharging);
  EXPECT_EQ(battery.charge_rate_mw, -10);
  EXPECT_EQ(battery.discharge_rate_mw, 11U);
}

TEST(ProfileFactsTest, ABatteryWithoutFiguresIsZeroEmptyAndFalse) {
  const simulation::Battery battery = Parse(R"({"batteries": [{}]})").batteries.at(0).value();
  EXPECT_EQ(battery.serial_number, "");
  EXPECT_EQ(battery.voltage_mv, 0);
  EXPECT_EQ(battery.remaining_percent, 0.0F);
  EXPECT_FALSE(battery.discharging);
}

TEST(ProfileFactsTest, SensorsReadOrFail) {
  const simulation::Sensors sensors = FullMachine().sensors;
  EXPECT_EQ(sensors.apartment, Failure{-5});
  EXPECT_EQ(sensors.hinge->outcome, HingeOutcome::kReading);
  EXPECT_EQ(sensors.hinge->angle_degrees, 110.5);
  EXPECT_EQ(sensors.orientation, Plain<std::int32_t>(4));
  EXPECT_EQ(Parse(R"({"sensors": {"orientation": {"fails": 5}}})").sensors.orientation, Fails<std::int32_t>(5));
}

TEST(ProfileFactsTest, AHingeHasOneOfItsOutcomes) {
  const auto hinge = [](const std::string& json) {
    return *Parse(R"({"sensors": {"hinge": )" + json + "}}").sensors.hinge;
  };
  EXPECT_TRUE(std::isnan(hinge(R"({"angle_degrees": "nan"})").angle_degrees));
  EXPECT_EQ(hinge(R"({"angle_degrees": -1})").angle_degrees, -1);
  EXPECT_EQ(hinge(R"({"outcome": "sensor_timeout"})").outcome, HingeOutcome::kSensorTimeout);
  EXPECT_EQ(hinge(R"({"outcome": "reading_timeout"})").outcome, HingeOutcome::kReadingTimeout);
  EXPECT_EQ(hinge(R"({"outcome": "no_reading"})").outcome, HingeOutcome::kNoReading);
}

TEST(ProfileFactsTest, AWmiPropertyArrivesInWmisTypes) {
  const simulation::WmiRow row = FullMachine().wmi.classes.at("Win32_Things").at(0);
  EXPECT_EQ(row.at("Flag"), WmiProperty(true));
  EXPECT_EQ(row.at("Small"), WmiProperty(std::int32_t{-2147483647 - 1}));
  EXPECT_EQ(row.at("Large"), WmiProperty("2147483648"));
  EXPECT_EQ(row.at("Negative"), WmiProperty("-2147483649"));
  EXPECT_EQ(row.at("Huge"), WmiProperty("18446744073709551615"));
  EXPECT_EQ(row.at("Real"), WmiProperty(5.0));
  EXPECT_EQ(row.at("Text"), WmiProperty("\xC3\xBC"));
  EXPECT_EQ(row.at("Nothing"), WmiProperty(WmiNull{}));
}

TEST(ProfileFactsTest, AssociationsAndFailuresOfWmiAreListed) {
  const simulation::Wmi wmi = FullMachine().wmi;
  ASSERT_EQ(wmi.associations.size(), 1U);
  EXPECT_EQ(wmi.associations[0].of, R"(A.Id='\\.\1')");
  EXPECT_EQ(wmi.associations[0].result_class, "B");
  EXPECT_EQ(wmi.associations[0].rows.at(0).at("Id"), WmiProperty("b"));
  ASSERT_EQ(wmi.failures.size(), 1U);
  EXPECT_EQ(wmi.failures[0].query_contains, "Win32");
  EXPECT_EQ(wmi.failures[0].status, tests::kAccessDenied);
  EXPECT_EQ(wmi.failures[0].times, 2U);
  EXPECT_EQ(wmi.failures[0].after, 1U);
}

TEST(ProfileFactsTest, AFailureOfWmiIsForAlwaysAndAtOnceUnlessStated) {
  const simulation::WmiFailure failure = Parse(R"({"wmi": {"failures": [{"status": -1}]}})").wmi.failures.at(0);
  EXPECT_FALSE(failure.times);
  EXPECT_EQ(failure.after, 0U);
  EXPECT_EQ(failure.query_contains, "");
}

TEST(ProfileFactsTest, AFirmwareReplyHasItsBytes) {
  const simulation::BiosReply reply = FullMachine().private_bios.at(0);
  EXPECT_EQ(reply.command, 1U);
  EXPECT_EQ(reply.command_type, 40U);
  EXPECT_THAT(reply.input, ElementsAre(1, 0, 255));
  EXPECT_EQ(reply.result, -1);
  EXPECT_EQ(reply.return_code, 3U);
  EXPECT_THAT(reply.output, ElementsAre(2, 55));
}

TEST(ProfileFactsTest, ANvmlCardAnswersOrFailsCallByCall) {
  const simulation::Nvml nvml = FullMachine().nvml.value();
  EXPECT_THAT(nvml.missing_functions, ElementsAre("nvmlDeviceGetMemoryBusWidth"));
  EXPECT_EQ(nvml.init, 9U);
  EXPECT_EQ(nvml.count, Plain<std::uint32_t>(2));
  const simulation::NvmlDevice& device = nvml.devices.at(0);
  EXPECT_EQ(device.open, 15U);
  EXPECT_EQ(device.serial, Plain<std::string>("165"));
  EXPECT_EQ(device.bus_id, Plain<std::string>("00000000:0A:00.0"));
  EXPECT_EQ(device.throttle_reasons, Plain<std::uint64_t>(0x24));
  EXPECT_EQ(device.temperature_celsius, Plain<std::uint32_t>(20));
  EXPECT_EQ(device.memory_clock_mhz, Plain<std::uint32_t>(21));
  EXPECT_EQ(device.graphics_clock_mhz, Plain<std::uint32_t>(22));
  EXPECT_EQ(device.memory_bus_width_bits, Plain<std::uint32_t>(23));
  EXPECT_EQ(device.memory_total_bytes, Plain<std::uint64_t>(18446744073709551615U));
  EXPECT_EQ(device.memory_used_bytes, Plain<std::uint64_t>(25));
  EXPECT_EQ(device.gpu_percent, Plain<std::uint32_t>(26));
  EXPECT_EQ(device.encoder_percent, Plain<std::uint32_t>(27));
  EXPECT_EQ(device.decoder_percent, Fails<std::uint32_t>(3));
}

TEST(ProfileFactsTest, ThrottleReasonsMayBeANumberToo) {
  const auto reasons = [](const std::string& json) {
    return Parse(R"({"nvml": {"devices": [{"throttle_reasons": )" + json + "}]}}").nvml->devices.at(0).throttle_reasons;
  };
  EXPECT_EQ(reasons("36"), Plain<std::uint64_t>(36));
  EXPECT_EQ(reasons(R"("0xFFFFFFFFFFFFFFFF")"), Plain<std::uint64_t>(18446744073709551615U));
  EXPECT_EQ(reasons(R"({"fails": 4294967295})"), Fails<std::uint64_t>(-1));
}

TEST(ProfileFactsTest, AnAdlxCardHasTheMetricsThatAreStatedAndTheyMayFail) {
  const simulation::Adlx adlx = FullMachine().adlx.value();
  EXPECT_THAT(adlx.missing_functions, ElementsAre("ADLXTerminate"));
  EXPECT_EQ(adlx.initialize, 1U);
  EXPECT_EQ(adlx.performance_services, 2U);
  EXPECT_EQ(adlx.gpu_list, 3U);
  const simulation::AdlxGpu& gpu = adlx.gpus.at(0);
  EXPECT_EQ(gpu.open, 4U);
  EXPECT_EQ(gpu.metrics_support, 5U);
  EXPECT_EQ(gpu.support_questions, 6U);
  EXPECT_EQ(gpu.current_metrics, 4294967295U);
  EXPECT_EQ(gpu.vendor_id, Answer<std::string>("1002"));
  EXPECT_EQ(gpu.device_id, Answer<std::string>(Failure{12}));
  EXPECT_EQ(gpu.total_memory_mb, Answer<std::uint32_t>(8192U));
  EXPECT_EQ(gpu.usage_percent, Plain<double>(41.5));
  EXPECT_EQ(gpu.temperature_celsius, Plain<double>(63.9));
  EXPECT_EQ(gpu.clock_mhz, Plain<std::int32_t>(-30));
  EXPECT_EQ(gpu.memory_clock_mhz, Plain<std::int32_t>(31));
  EXPECT_EQ(gpu.memory_used_mb, Fails<std::int32_t>(3));
  EXPECT_FALSE(Parse(R"({"adlx": {"gpus": [{}]}})").adlx->gpus.at(0).usage_percent);
}

TEST(ProfileFactsTest, TheRegistryKeepsTheOrderGiven) {
  const auto registry = FullMachine().registry;
  ASSERT_EQ(registry.size(), 1U);
  EXPECT_EQ(registry[0].name, R"(HKEY_LOCAL_MACHINE\A/B)");
  EXPECT_THAT(registry[0].values, ElementsAre(Pair("z", "first"), Pair("a", "last")));
  ASSERT_EQ(registry[0].keys.size(), 1U);
  EXPECT_EQ(registry[0].keys[0].name, "key");
  EXPECT_THAT(registry[0].keys[0].values, ElementsAre(Pair("inner", "value")));
}

TEST(ProfileFactsTest, AnNpuReportIsTextAsItIsOrAnyOtherValueSerialised) {
  EXPECT_EQ(FullMachine().npu_report, R"({"npu_count":1,"npu_info":[]})");
  EXPECT_EQ(Parse(R"({"npu_report": "{\"npu_count\": 1,"})").npu_report, R"({"npu_count": 1,)");
  EXPECT_EQ(Parse(R"({"npu_report": 7})").npu_report, "7");
}

TEST(ProfileFactsTest, TheStorageLibraryListsItsDrives) {
  const Machine machine = FullMachine();
  ASSERT_EQ(machine.storage_library.size(), 1U);
  EXPECT_EQ(machine.storage_library[0].name, "NVME1");
  EXPECT_EQ(machine.storage_library[0].wmi_serial, "0025_38A1.");
}

TEST(ProfileFactsTest, TheSessionHasItsTicks) {
  const simulation::Session session = FullMachine().session;
  EXPECT_THAT(session.tick_counts_ms, ElementsAre(40U, 18446744073709551615U));
  EXPECT_EQ(session.maximum_touches, 41U);
  EXPECT_EQ(session.last_input_tick_ms, Plain<std::uint32_t>(42));
  EXPECT_EQ(session.number, Answer<std::uint32_t>(43U));
}

TEST(ProfileFactsTest, ASessionIsAUsersUnlessStated) {
  EXPECT_EQ(Parse("{}").session.number, Answer<std::uint32_t>(1U));
  EXPECT_EQ(Parse(R"({"session": {"number": {"fails": 87}}})").session.number, Answer<std::uint32_t>(Failure{87}));
}

TEST(ProfileFactsTest, WhatIsThereMayRefuseToBeRead) {
  const Machine machine = Parse(R"({"smbios": {"fails": 5}, "batteries": [{"fails": 1460}], "npu_report": {"fails": -3},
      "registry": {"HKEY_LOCAL_MACHINE\\A": {"fails": 7}, "HKEY_LOCAL_MACHINE\\B": {"fails": {"x": "y"}}}})");
  EXPECT_EQ(machine.smbios_failure, Failure{5});
  EXPECT_EQ(machine.batteries.at(0).value().failure, Failure{1460});
  EXPECT_EQ(machine.npu_failure, Failure{-3});
  EXPECT_EQ(machine.npu_report, "");
  EXPECT_EQ(machine.registry.at(0).failure, Failure{7});
  EXPECT_FALSE(machine.registry.at(1).failure) << "a subkey may have any name";
  EXPECT_EQ(machine.registry.at(1).keys.at(0).name, "fails");
}

TEST(ProfileFactsTest, AProcessHasItsFiguresFailuresAndWindows) {
  const simulation::Process process = FullMachine().processes.at(0);
  EXPECT_EQ(process.id, 1234U);
  EXPECT_EQ(process.created_100ns, 12'500'000);
  EXPECT_EQ(process.user_100ns, 50U);
  EXPECT_EQ(process.kernel_100ns, 51U);
  EXPECT_EQ(process.peak_working_set_bytes, 52U);
  EXPECT_EQ(process.working_set_bytes, 53U);
  EXPECT_EQ(process.exit_code, Answer<std::uint32_t>(0U));
  EXPECT_EQ(process.wait, Answer<std::uint32_t>(128U));
  EXPECT_EQ(process.elevated, Answer<bool>(true));
  EXPECT_EQ(process.open_for_reading, Failure{61});
  EXPECT_EQ(process.open_for_query, Failure{62});
  EXPECT_EQ(process.times, Failure{63});
  EXPECT_EQ(process.memory, Failure{64});
  EXPECT_EQ(process.token, Failure{65});
  ASSERT_EQ(process.windows.size(), 1U);
  EXPECT_FALSE(process.windows[0].visible);
  EXPECT_TRUE(process.windows[0].has_owner);
  EXPECT_EQ(process.windows[0].title, "Title");
}

TEST(ProfileFactsTest, AProcessIsRunningUnlessStated) {
  const simulation::Process process = Parse(R"({"processes": [{"id": 1, "windows": [{}]}]})").processes.at(0);
  EXPECT_EQ(process.exit_code, Answer<std::uint32_t>(259U));
  EXPECT_EQ(process.wait, Answer<std::uint32_t>(258U));
  EXPECT_EQ(process.elevated, Answer<bool>(false));
  EXPECT_TRUE(process.windows.at(0).visible);
}

TEST(ProfileFactsTest, TheNetworkListAnswersOrFails) {
  const simulation::Network network = FullMachine().network;
  EXPECT_EQ(network.com, Failure{70});
  EXPECT_EQ(network.manager->create, 71);
  EXPECT_EQ(network.manager->get_networks, 72);
  const simulation::ListedNetwork& listed = network.manager->networks.at(0);
  EXPECT_EQ(listed.category, Plain<std::int32_t>(2));
  EXPECT_EQ(listed.connected, Plain<bool>(true));
  EXPECT_EQ(listed.internet, Fails<bool>(73));
  const auto& connections = std::get<std::vector<simulation::NetworkConnection>>(listed.connections);
  ASSERT_EQ(connections.size(), 3U);
  EXPECT_EQ(connections[0].adapter, Plain<std::string>("{GUID}"));
  EXPECT_EQ(connections[1].adapter, Fails<std::string>(94));
  EXPECT_EQ(connections[2].adapter, std::nullopt);
}

TEST(ProfileFactsTest, ConnectionsMayFailAsAWhole) {
  const simulation::Network network =
      Parse(R"({"network": {"manager": {"networks": [{"connections": {"fails": 95}}]}}})").network;
  EXPECT_EQ(std::get<Failure>(network.manager->networks.at(0).connections), Failure{95});
}

TEST(ProfileFactsTest, TheCountersOfAnInterfaceMayFail) {
  const simulation::Network network = Parse(R"({"network": {"interface_counters": {"6": {"fails": 96}}}})").network;
  EXPECT_EQ(std::get<Failure>(network.interface_counters.at(6)), Failure{96});
}

TEST(ProfileFactsTest, SystemMessagesAreToldByTheirCode) {
  const simulation::Machine machine = FullMachine();
  ASSERT_EQ(machine.system_messages.size(), 1U);
  EXPECT_EQ(machine.system_messages[0].code, tests::kClassNotRegistered);
  EXPECT_EQ(machine.system_messages[0].text, "Class not registered\r\n");
}

TEST(ProfileFactsTest, AWlanInterfaceHasItsConnectionAndProfiles) {
  const simulation::Wlan wlan = FullMachine().network.wlan.value();
  EXPECT_EQ(wlan.open, 74);
  EXPECT_EQ(wlan.enumerate, 75);
  const simulation::WlanInterface& interface = wlan.interfaces.at(0);
  EXPECT_EQ(interface.guid, "{GUID}");
  EXPECT_EQ(interface.state, 1);
  EXPECT_EQ(interface.connection, 76);
  EXPECT_EQ(interface.profile, "Home");
  EXPECT_EQ(interface.phy_type, 10U);
  EXPECT_EQ(interface.signal_quality, 87U);
  EXPECT_EQ(interface.rx_rate_kbps, 77U);
  EXPECT_EQ(interface.tx_rate_kbps, 78U);
  EXPECT_EQ(interface.channel, Plain<std::uint32_t>(36));
  EXPECT_EQ(interface.profile_list, 79);
  ASSERT_EQ(interface.profiles.size(), 1U);
  EXPECT_EQ(interface.profiles[0].name, "Home");
  EXPECT_EQ(interface.profiles[0].flags, 131072U);
  EXPECT_EQ(interface.profiles[0].xml, Plain<std::string>("<a/>"));
}

TEST(ProfileFactsTest, CountersAreThoseOfTheirInterfaceAndFamily) {
  const simulation::Network network = FullMachine().network;
  const auto& counters = std::get<simulation::InterfaceCounters>(network.interface_counters.at(5));
  EXPECT_EQ(counters.in_octets, 80U);
  EXPECT_EQ(counters.out_octets, 81U);
  const auto& tcp_v4 = std::get<simulation::TcpCounters>(network.tcp_v4.value());
  EXPECT_EQ(tcp_v4.established, 90U);
  EXPECT_EQ(tcp_v4.attempt_fails, 91U);
  EXPECT_EQ(tcp_v4.errors_in, 92U);
  EXPECT_EQ(std::get<Failure>(network.tcp_v6.value()), Failure{93});
}

}  // namespace
}  // namespace zt::tests
