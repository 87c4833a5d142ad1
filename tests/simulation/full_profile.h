#pragma once

#include <string_view>

namespace zt::tests {

/// A profile in which every key of the format stands, each with a value of its own.
inline constexpr std::string_view kFullProfile = R"json({
  "description": "Every key",
  "clock": {"now": "2026-03-07T14:20:42Z", "standard_offset_minutes": -180, "local_offset_minutes": -120},
  "smbios": {"serial_number": "5CG0000009"},
  "power_status": {"battery_flag": 9},
  "batteries": [
    null,
    {
      "serial_number": "SN-1",
      "ct_number": "CT-1",
      "design_voltage_mv": -1,
      "further_capacity_mwh": 2,
      "full_charge_capacity_mwh": 3,
      "full_charge_percent": 94.5,
      "remaining_capacity_mwh": 4294967295,
      "remaining_percent": 75.25,
      "max_error_percent": 4,
      "cycle_count": 5,
      "temperature_celsius": -6,
      "voltage_mv": 7,
      "electric_current": 8,
      "status_code": -9,
      "on_ac_not_charging": true,
      "discharging": true,
      "charge_rate_mw": -10,
      "discharge_rate_mw": 11
    }
  ],
  "sensors": {"apartment": {"fails": -5}, "hinge": {"angle_degrees": 110.5}, "orientation": 4},
  "wmi": {
    "classes": {
      "Win32_Things": [
        {
          "Flag": true,
          "Small": -2147483648,
          "Large": 2147483648,
          "Negative": -2147483649,
          "Huge": 18446744073709551615,
          "Real": 5.0,
          "Text": "ü",
          "Nothing": null
        }
      ]
    },
    "associations": [{"of": "A.Id='\\\\.\\1'", "result_class": "B", "rows": [{"Id": "b"}]}],
    "failures": [{"query_contains": "Win32", "status": 2147749891, "times": 2, "after": 1}]
  },
  "private_bios": [
    {"command": 1, "command_type": 40, "input": [1, 0, 255], "result": -1, "return_code": 3, "output": [2, 55]}
  ],
  "nvml": {
    "missing_functions": ["nvmlDeviceGetMemoryBusWidth"],
    "init": 9,
    "count": 2,
    "devices": [
      {
        "open": 15,
        "serial": "165",
        "bus_id": "00000000:0A:00.0",
        "throttle_reasons": "0x24",
        "temperature_celsius": 20,
        "memory_clock_mhz": 21,
        "graphics_clock_mhz": 22,
        "memory_bus_width_bits": 23,
        "memory_total_bytes": 18446744073709551615,
        "memory_used_bytes": 25,
        "gpu_percent": 26,
        "encoder_percent": 27,
        "decoder_percent": {"fails": 3}
      }
    ]
  },
  "adlx": {
    "missing_functions": ["ADLXTerminate"],
    "initialize": 1,
    "performance_services": 2,
    "gpu_list": 3,
    "gpus": [
      {
        "open": 4,
        "metrics_support": 5,
        "support_questions": 6,
        "current_metrics": -1,
        "vendor_id": "1002",
        "device_id": {"fails": 12},
        "total_memory_mb": 8192,
        "usage_percent": 41.5,
        "temperature_celsius": 63.9,
        "clock_mhz": -30,
        "memory_clock_mhz": 31,
        "memory_used_mb": {"fails": 3}
      }
    ]
  },
  "registry": {"HKEY_LOCAL_MACHINE\\A/B": {"z": "first", "key": {"inner": "value"}, "a": "last"}},
  "npu_report": {"npu_count": 1, "npu_info": []},
  "storage_library": [{"name": "NVME1", "wmi_serial": "0025_38A1."}],
  "session": {"tick_counts_ms": [40, 18446744073709551615], "maximum_touches": 41, "last_input_tick_ms": 42, "number": 43},
  "processes": [
    {
      "id": 1234,
      "created": "1970-01-01T00:00:01.25Z",
      "user_100ns": 50,
      "kernel_100ns": 51,
      "peak_working_set_bytes": 52,
      "working_set_bytes": 53,
      "exit_code": 0,
      "wait": 128,
      "elevated": true,
      "open_for_reading": {"fails": 61},
      "open_for_query": {"fails": 62},
      "times": {"fails": 63},
      "memory": {"fails": 64},
      "token": {"fails": 65},
      "windows": [{"visible": false, "has_owner": true, "title": "Title"}]
    }
  ],
  "network": {
    "com": {"fails": 70},
    "manager": {
      "create": 71,
      "get_networks": 72,
      "networks": [
        {"category": 2, "connected": true, "internet": {"fails": 73}, "connections": [{"adapter": "{GUID}"}, {"adapter": {"fails": 94}}, {}]}
      ]
    },
    "wlan": {
      "open": 74,
      "enumerate": 75,
      "interfaces": [
        {
          "guid": "{GUID}",
          "state": 1,
          "connection": 76,
          "profile": "Home",
          "phy_type": 10,
          "signal_quality": 87,
          "rx_rate_kbps": 77,
          "tx_rate_kbps": 78,
          "channel": 36,
          "profile_list": 79,
          "profiles": [{"name": "Home", "flags": 131072, "xml": "<a/>"}]
        }
      ]
    },
    "interface_counters": {"5": {"in_octets": 80, "out_octets": 81}},
    "tcp_v4": {"established": 90, "attempt_fails": 91, "errors_in": 92},
    "tcp_v6": {"fails": 93}
  },
  "system_messages": [{"code": 2147746132, "text": "Class not registered\r\n"}]
})json";

}  // namespace zt::tests
