#pragma once

#include <google/protobuf/message.h>

#include <cstdint>
#include <memory>
#include <string>

#include "device_performance_storage.pb.h"
#include "performance_samples_upload.pb.h"
#include "zt/shared/wmi/wmi_client.h"
#include "zt/shared/ztbios/private_bios_wmi.h"
#include "zt/zt_collector_export.h"

namespace zt::telemetry::collector::performancesamples {

using contract::storage::device_performance::AmdPmfSamples;
using contract::storage::device_performance::EnergyEMISamples;
using contract::storage::device_performance::ThermalZTBiosSamples;
using contract::upload::log::PcLogPerformanceSamplesAsCDM;

/// What stands for the serial number of a machine whose firmware tells none.
inline constexpr char kUnknownSerialNumber[] = "UNKNOWN_SN";

/// Base of all sample builders, and owner of the state that all cycles of the process share: the collector that records
/// are handed to, the upload record that the builders fill, and the storage records. Nothing here is locked: one cycle
/// runs at a time.
class ZT_COLLECTOR_EXPORT PerfMessages {
 public:
  /// The clients are the cycle's own and outlive the builder. Either may be null: what it would tell is missing then.
  PerfMessages();
  explicit PerfMessages(shared::wmi::WMIClient* wmi_client);
  explicit PerfMessages(shared::ztbios::PrivateBiosWmi* private_bios_wmi);
  PerfMessages(shared::wmi::WMIClient* wmi_client, shared::ztbios::PrivateBiosWmi* private_bios_wmi);
  /// Copies share the builder's own record.
  PerfMessages(const PerfMessages&);
  PerfMessages& operator=(const PerfMessages&);
  virtual ~PerfMessages();

  /// Samples the builder's area into `static_cdm_` and the storage records. Throws `Error` or a standard exception when
  /// the area's source fails; what was written before stays.
  virtual void PopulateStorageAndUploadProtos() = 0;

  /// Creates the shared records and keeps the collector (`handle`, a `PerformanceSamples*`) and event type of the first
  /// call for the life of the process; later calls change nothing. Only when that collector is gone (`ForgetHandle`)
  /// does the next call's handle take its place: records cannot be handed to a deleted object.
  static void Init(void* handle, int event_type);

  /// Called by a collector that is being deleted.
  static void ForgetHandle(const void* handle);

  /// The serial number of the machine's SMBIOS system information, as it is; `kUnknownSerialNumber` when there is none.
  static std::string GetSN();

  /// Turns "2025-07-15T12:20:42-03:00" into "2025-07-15T12:20:42.000Z": the same wall-clock digits, not UTC. Empty when
  /// the text is not of this form.
  static std::string GetCurrentLocalTime(const std::string& local_time_with_offset);

  /// Ends a cycle: stores `amd_pmf_`, stamps and sends `static_cdm_`, and puts an empty record in its place. A failed
  /// store is logged; a failed send loses the record. What hands over is defined where the collector is, which
  /// `perf_handle_` is one of: src/collector/storage_and_upload.cpp.
  static void ProcessStorageAndUpload();

  /// The collector of the first `Init`; null before.
  static void* perf_handle_;
  /// The event type of the first `Init`.
  static int event_type_;
  /// The upload record that the builders fill.
  static std::shared_ptr<PcLogPerformanceSamplesAsCDM> static_cdm_;
  /// Firmware temperatures: filled, never handed over.
  static std::shared_ptr<ThermalZTBiosSamples> thermal_;
  /// Energy samples: never filled.
  static std::shared_ptr<EnergyEMISamples> energy_;
  /// Platform-management figures: stored at the end of each cycle, never replaced.
  static std::shared_ptr<AmdPmfSamples> amd_pmf_;

 protected:
  /// Stamps the builder's own record `cdm_` with the present time and sends `message`: a builder that wants a stamped
  /// record sent passes `*cdm_`. Without a collector nothing happens.
  void AddSendWrapper(const google::protobuf::Message& message);
  /// The same with the caller's time text, taken as it is.
  void AddSendWrapper(const google::protobuf::Message& message, const std::string& time);

  /// Asks the firmware for its thermal readings. `selector`: which ones, only the low byte counts. `reply`: buffer of
  /// 128 bytes (`ThermalReply`). Returns the status of a failed call (0x80004003: no client), else the firmware's code;
  /// 0 is success.
  std::uint32_t GetThermalDataFromPrivateBiosWmi(int selector, void* reply);

  std::shared_ptr<PcLogPerformanceSamplesAsCDM> cdm_;
  shared::wmi::WMIClient* wmi_client_ = nullptr;
  shared::ztbios::PrivateBiosWmi* private_bios_wmi_ = nullptr;
};

}  // namespace zt::telemetry::collector::performancesamples
