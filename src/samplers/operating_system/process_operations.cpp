#include "samplers/operating_system/process_operations.h"

#include <zt/text/wide_text.h>

#include <cmath>
#include <cstdint>
#include <typeinfo>

#include "samplers/own_condition.h"
#include "samplers/rounding.h"
#include "samplers/wmi_query.h"
#include "zt/telemetry/common/error.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using common::Error;
using shared::wmi::WMIClient;

constexpr wchar_t kOperationsQuery[] =
    L"SELECT ProcessId, WriteOperationCount, ReadOperationCount FROM Win32_Process WHERE ";
constexpr wchar_t kIdEquals[] = L"ProcessId=";
constexpr wchar_t kOr[] = L" OR ";

constexpr char kNoId[] = "ProcessId value could not be read...";
constexpr char kUnknownProcess[] = "unknown Win32_Process entry found...";

constexpr double kMebibytesPerByte = 1.0 / 1048576;
// Of a count of operations: its field says kB, and has always carried the count divided by 1024.
constexpr double kThousandsPerOperation = 0.0009765625;

// The figures here are below 2^32, as they come from 32 bits.
std::uint32_t WholePart(double value) {
  return static_cast<std::uint32_t>(value);
}

}  // namespace

std::wstring OperationsQuery(const ProcessList& processes) {
  std::wstring query = kOperationsQuery;
  for (const auto& process : processes) {
    if (process != processes.front()) query += kOr;
    query += kIdEquals + text::ToWide(process->process_id);
  }
  return query;
}

std::shared_ptr<WMIProcessInfo> FindProcessOfRow(const WMIClient& wmi, const ProcessTable& table) {
  std::string id;
  RequireSuccess(wmi.GetValue(L"ProcessId", id), kNoId);
  const auto entry = table.find(id);
  if (entry == table.end()) {
    throw Error(Error::kCallFailed, kOwnCondition, kUnknownProcess, typeid(WMIClient).name(), "");
  }
  std::shared_ptr<WMIProcessInfo> process = entry->second;
  wmi.GetValue(L"WriteOperationCount", process->io_writes);
  wmi.GetValue(L"ReadOperationCount", process->io_reads);
  return process;
}

// Rounded in double precision, unlike the other samplers' figures: single precision would change counts above 2^24.
void ConvertUnits(WMIProcessInfo& process) {
  const double working_set_bytes = std::trunc(static_cast<double>(process.working_set));
  process.working_set = static_cast<float>(RoundToTwoDecimals(working_set_bytes * kMebibytesPerByte));
  process.peak_working_set = WholePart(RoundToTwoDecimals(process.peak_working_set * kMebibytesPerByte));
  process.io_writes_kb = WholePart(RoundToTwoDecimals(process.io_writes * kThousandsPerOperation));
  process.io_writes = WholePart(RoundToTwoDecimals(static_cast<double>(process.io_writes)));
  process.io_reads_kb = WholePart(RoundToTwoDecimals(process.io_reads * kThousandsPerOperation));
  process.io_reads = WholePart(RoundToTwoDecimals(static_cast<double>(process.io_reads)));
}

}  // namespace zt::telemetry::collector::performancesamples
