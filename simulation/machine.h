#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "zt/zt_simulation_export.h"

/// The simulated machine: facts of a machine, read from a JSON profile or built in code. What is left out does not
/// exist. The meaning of each fact is that of the profile key of the same name (docs/machine-profile.md).
namespace zt::simulation {

/// A single call that fails with the status of its interface (HRESULT, Win32 error, vendor result), as a 32-bit
/// pattern.
struct Failure {
  std::int32_t status = 0;
  bool operator==(const Failure&) const = default;
};

/// What a call yields: its value, or its failure.
template <typename T>
using Answer = std::variant<T, Failure>;

/// A call that may not be stated at all.
template <typename T>
using OptionalAnswer = std::optional<Answer<T>>;

/// A clock and its zone.
struct Clock {
  std::optional<std::int64_t> utc_seconds = 0;  // since 1970, standing still; absent: the real clock in this zone
  std::int32_t standard_offset_minutes = 0;
  std::int32_t local_offset_minutes = 0;
};

struct Battery {
  std::string serial_number;
  std::string ct_number;
  std::int32_t design_voltage_mv = 0;
  std::int32_t further_capacity_mwh = 0;
  std::int32_t full_charge_capacity_mwh = 0;
  float full_charge_percent = 0;
  std::uint32_t remaining_capacity_mwh = 0;
  float remaining_percent = 0;
  std::uint32_t max_error_percent = 0;
  std::uint32_t cycle_count = 0;
  std::int32_t temperature_celsius = 0;
  std::int32_t voltage_mv = 0;
  std::uint32_t electric_current = 0;
  std::int32_t status_code = 0;
  bool on_ac_not_charging = false;
  bool discharging = false;
  std::int32_t charge_rate_mw = 0;
  std::uint32_t discharge_rate_mw = 0;
  std::optional<Failure> failure;  // its driver does not answer
};

enum class HingeOutcome { kReading, kSensorTimeout, kReadingTimeout, kNoReading };

struct Hinge {
  HingeOutcome outcome = HingeOutcome::kReading;
  double angle_degrees = 0;  // may be NaN
};

struct Sensors {
  std::optional<Failure> apartment;
  std::optional<Hinge> hinge;
  OptionalAnswer<std::int32_t> orientation;
};

/// The value of a WMI property: null, boolean, signed 32-bit, 64-bit as text, double, text (UTF-8).
struct WmiNull {
  bool operator==(const WmiNull&) const = default;
};
using WmiProperty = std::variant<WmiNull, bool, std::int32_t, double, std::string>;
using WmiRow = std::map<std::string, WmiProperty>;

struct WmiAssociation {
  std::string of;  // the text between the braces of the query
  std::string result_class;
  std::vector<WmiRow> rows;
};

struct WmiFailure {
  std::string query_contains;
  std::int32_t status = 0;
  std::optional<std::uint32_t> times;  // absent: always
  std::uint32_t after = 0;             // so many matching executions succeed first
};

struct Wmi {
  std::map<std::string, std::vector<WmiRow>> classes;
  std::vector<WmiAssociation> associations;
  std::vector<WmiFailure> failures;
};

struct BiosReply {
  std::uint32_t command = 0;
  std::uint32_t command_type = 0;
  std::vector<std::uint8_t> input;
  std::int32_t result = 0;
  std::uint32_t return_code = 0;
  std::vector<std::uint8_t> output;
};

struct NvmlDevice {
  std::uint32_t open = 0;
  OptionalAnswer<std::string> serial;
  OptionalAnswer<std::string> bus_id;
  OptionalAnswer<std::uint64_t> throttle_reasons;
  OptionalAnswer<std::uint32_t> temperature_celsius;
  OptionalAnswer<std::uint32_t> memory_clock_mhz;
  OptionalAnswer<std::uint32_t> graphics_clock_mhz;
  OptionalAnswer<std::uint32_t> memory_bus_width_bits;
  OptionalAnswer<std::uint64_t> memory_total_bytes;
  OptionalAnswer<std::uint64_t> memory_used_bytes;
  OptionalAnswer<std::uint32_t> gpu_percent;
  OptionalAnswer<std::uint32_t> encoder_percent;
  OptionalAnswer<std::uint32_t> decoder_percent;
};

struct Nvml {
  std::vector<std::string> missing_functions;
  std::uint32_t init = 0;
  std::optional<OptionalAnswer<std::uint32_t>::value_type> count;  // absent: the number of devices
  std::vector<NvmlDevice> devices;
};

struct AdlxGpu {
  std::uint32_t open = 0;
  std::uint32_t metrics_support = 0;
  std::uint32_t support_questions = 0;
  std::uint32_t current_metrics = 0;
  Answer<std::string> vendor_id;
  Answer<std::string> device_id;
  Answer<std::uint32_t> total_memory_mb = 0U;
  // A metric that is absent is not supported.
  OptionalAnswer<double> usage_percent;
  OptionalAnswer<double> temperature_celsius;
  OptionalAnswer<std::int32_t> clock_mhz;
  OptionalAnswer<std::int32_t> memory_clock_mhz;
  OptionalAnswer<std::int32_t> memory_used_mb;
};

struct Adlx {
  std::vector<std::string> missing_functions;
  std::uint32_t initialize = 0;
  std::uint32_t performance_services = 0;
  std::uint32_t gpu_list = 0;
  std::vector<AdlxGpu> gpus;
};

/// A registry key: its values and its subkeys, each in the order given. The name of an outermost key is its whole path.
struct RegistryKey {
  std::string name;
  std::vector<std::pair<std::string, std::string>> values;
  std::vector<RegistryKey> keys;
  std::optional<Failure> failure = std::nullopt;  // of opening it
};

struct LibraryDrive {
  std::string name;
  std::string wmi_serial;
};

struct Session {
  std::vector<std::uint64_t> tick_counts_ms;  // one for each call, the last one from then on
  std::uint32_t maximum_touches = 0;
  OptionalAnswer<std::uint32_t> last_input_tick_ms;
  Answer<std::uint32_t> number = 1U;  // 0 is that of the services
};

struct Window {
  bool visible = true;
  bool has_owner = false;
  std::string title;
};

struct Process {
  std::uint32_t id = 0;
  std::int64_t created_100ns = 0;  // UTC, since 1970
  std::uint64_t user_100ns = 0;
  std::uint64_t kernel_100ns = 0;
  std::uint64_t peak_working_set_bytes = 0;
  std::uint64_t working_set_bytes = 0;
  Answer<std::uint32_t> exit_code = 259U;
  Answer<std::uint32_t> wait = 258U;
  Answer<bool> elevated = false;
  std::optional<Failure> open_for_reading;
  std::optional<Failure> open_for_query;
  std::optional<Failure> times;
  std::optional<Failure> memory;
  std::optional<Failure> token;
  std::vector<Window> windows;
};

struct NetworkConnection {
  OptionalAnswer<std::string> adapter;  // "{GUID}"
};

struct ListedNetwork {
  OptionalAnswer<std::int32_t> category;
  OptionalAnswer<bool> connected;
  OptionalAnswer<bool> internet;
  Answer<std::vector<NetworkConnection>> connections;
};

struct NetworkManager {
  std::int32_t create = 0;
  std::int32_t get_networks = 0;
  std::vector<ListedNetwork> networks;
};

struct WlanProfile {
  std::string name;
  std::uint32_t flags = 0;
  OptionalAnswer<std::string> xml;
};

struct WlanInterface {
  std::string guid;
  std::int32_t state = 0;  // as the platform numbers it, 1 is connected
  std::int32_t connection = 0;
  std::string profile;
  std::uint32_t phy_type = 0;
  std::uint32_t signal_quality = 0;
  std::uint32_t rx_rate_kbps = 0;
  std::uint32_t tx_rate_kbps = 0;
  OptionalAnswer<std::uint32_t> channel;
  std::int32_t profile_list = 0;
  std::vector<WlanProfile> profiles;
};

struct Wlan {
  std::int32_t open = 0;
  std::int32_t enumerate = 0;
  std::vector<WlanInterface> interfaces;
};

struct InterfaceCounters {
  std::uint32_t in_octets = 0;
  std::uint32_t out_octets = 0;
};

struct TcpCounters {
  std::uint32_t established = 0;
  std::uint32_t attempt_fails = 0;
  std::uint32_t errors_in = 0;
};

struct Network {
  std::optional<Failure> com;
  std::optional<NetworkManager> manager;
  std::optional<Wlan> wlan;
  std::map<std::uint32_t, Answer<InterfaceCounters>> interface_counters;
  OptionalAnswer<TcpCounters> tcp_v4;
  OptionalAnswer<TcpCounters> tcp_v6;
};

/// The system's text for a code, where a call's failure is told with one.
struct SystemMessage {
  std::int32_t code = 0;
  std::string text;
};

/// One machine.
struct Machine {
  std::string description;
  std::optional<Clock> clock;  // absent: the real clock and zone
  std::optional<std::string> smbios_serial_number;
  std::optional<Failure> smbios_failure;     // of reading the table
  std::optional<std::uint8_t> battery_flag;  // absent: the power status call fails
  std::vector<std::optional<Battery>> batteries;
  Sensors sensors;
  Wmi wmi;
  std::vector<BiosReply> private_bios;
  std::optional<Nvml> nvml;
  std::optional<Adlx> adlx;
  std::vector<RegistryKey> registry;
  std::string npu_report;
  std::optional<Failure> npu_failure;  // of asking for the NPUs
  std::vector<LibraryDrive> storage_library;
  Session session;
  std::vector<Process> processes;
  Network network;
  std::vector<SystemMessage> system_messages;
};

/// The machine that every simulated definition of the process reads. Until a machine is set: one on which nothing
/// exists.
ZT_SIMULATION_EXPORT const Machine& CurrentMachine();

/// Puts `machine` in the place of the current one, and forgets what was recorded of that one (counts of WMI failures,
/// tick counts, queries, calls of the vendors' libraries).
ZT_SIMULATION_EXPORT void UseMachine(Machine machine);

/// The text of every WQL query since `UseMachine`, UTF-8, in the order in which they ran.
ZT_SIMULATION_EXPORT std::vector<std::string> RecordedQueries();

}  // namespace zt::simulation
