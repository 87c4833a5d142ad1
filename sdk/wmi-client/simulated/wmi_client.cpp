#include "zt/shared/wmi/wmi_client.h"

#include <zt/text/wide_text.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "base/time_budget.h"
#include "base/wmi_waiting.h"
#include "query_limits.h"
#include "query_observer.h"
#include "simulated/change_type.h"
#include "simulation/calls.h"
#include "simulation/handed_out.h"
#include "simulation/waiting.h"
#include "simulation/wql.h"

namespace zt::shared::wmi {
namespace {

using simulation::Disturbance;

WmiValue AsWmiGivesIt(const simulation::WmiProperty& property) {
  return std::visit(
      [](const auto& value) -> WmiValue {
        using Value = std::decay_t<decltype(value)>;
        if constexpr (std::is_same_v<Value, simulation::WmiNull>) {
          return Null{};
        } else if constexpr (std::is_same_v<Value, std::string>) {
          return text::ToWide(value);
        } else {
          return value;
        }
      },
      property);
}

constexpr auto kRefused = static_cast<std::int32_t>(0x80041003);  // WBEM_E_ACCESS_DENIED
constexpr auto kServerUnavailable = static_cast<std::int32_t>(0x800706BA);
constexpr std::size_t kMostRows = 1'000;  // as many as the limits of time let through

// A query that is as disturbed as it is to be.
simulation::WqlResult RunDisturbed(const std::string& wql) {
  const Disturbance met = simulation::Announce(
      "query", wql, {Disturbance::kFails, Disturbance::kThrows, Disturbance::kEmpty, Disturbance::kEndlessRows});
  simulation::WqlResult result = simulation::RunQuery(wql);
  if (met == Disturbance::kFails) return {kRefused, {}};
  if (met == Disturbance::kEmpty) return {};
  if (met == Disturbance::kEndlessRows && !result.rows.empty()) {
    result.rows.resize(kMostRows, result.rows.back());
    result.status = kTimedOut;
  }
  return result;
}

// The rows are fetched one by one: those before the first that fails are kept.
void FetchRows(const std::string& wql, simulation::WqlResult& result) {
  for (std::size_t i = 0; result.status == kSuccess && i < result.rows.size(); ++i) {
    if (simulation::Announce("row", wql, {Disturbance::kFails}) != Disturbance::kFails) continue;
    result.rows.resize(i);
    result.status = kRefused;
  }
}

// The value of a property that is not as it should be; absent for one that is.
std::optional<WmiValue> Disturbed(Disturbance met) {
  switch (met) {
    case Disturbance::kNull:
      return Null{};
    case Disturbance::kEmpty:
      return std::wstring();
    case Disturbance::kAbsurd:
      return L"18446744073709551615";
    case Disturbance::kEndlessText:
      return text::ToWide(simulation::EndlessText());
    default:
      return std::nullopt;
  }
}

}  // namespace

class WMIClient::Rows {
 public:
  // What keeps a query from being asked: a failure to connect, which is tried once, and no time left for all queries.
  std::int32_t Readiness() {
    if (!connection_) {
      const bool in_time = simulation::WaitFor("Connecting to WMI", base::kConnectionLimit);
      connection_ = in_time ? kSuccess : kServerUnavailable;
    }
    return *connection_ == kSuccess && patience_.IsSpent() ? kTimedOut : *connection_;
  }

  // Lets the rows of a query come one by one, each in its time. Those that came before a limit are kept.
  void Gather(base::WaitLimits limits, simulation::WqlResult& result) {
    const Patience::Spending spending(patience_);
    limits.whole = std::min(limits.whole, patience_.Left());
    std::size_t came = 0;
    result.status = base::GatherWithin<simulation::WaitClock>(
        limits, [&](std::chrono::milliseconds wait) -> std::optional<std::int32_t> {
          if (!simulation::WaitFor("Rows of queries", wait)) return kTimedOut;
          if (came == result.rows.size()) return result.status;
          ++came;
          return std::nullopt;
        });
    result.rows.resize(came);
  }

  void Replace(std::string wql, std::vector<simulation::WmiRow> rows) {
    wql_ = std::move(wql);
    rows_ = std::move(rows);
    taken_ = 0;
    current_ = nullptr;
  }

  bool Next() {
    current_ = taken_ < rows_.size() ? &rows_[taken_++] : nullptr;
    return current_ != nullptr;
  }

  const simulation::WmiRow* Current() const { return current_; }

  const std::string& Wql() const { return wql_; }

 private:
  using Patience = base::TimeBudgetBy<simulation::WaitClock>;

  simulation::HandedOutThing counted_{"WMI client"};
  std::optional<std::int32_t> connection_;
  Patience patience_{kAllQueriesLimit};
  std::string wql_;
  std::vector<simulation::WmiRow> rows_;
  std::size_t taken_ = 0;
  const simulation::WmiRow* current_ = nullptr;
};

// Every namespace shows the same tables.
WMIClient::WMIClient(const std::wstring& /*wmi_namespace*/) : rows_(std::make_unique<Rows>()) {
  simulation::Announce("WMIClient", {Disturbance::kThrows});
}

WMIClient::~WMIClient() = default;

std::int32_t WMIClient::ExecQuery(const std::wstring& wql) {
  AnnounceQuery(wql);
  std::string utf8 = text::ToUtf8(wql);
  simulation::WqlResult result;
  result.status = rows_->Readiness();
  if (result.status == kSuccess) {
    result = RunDisturbed(utf8);
    FetchRows(utf8, result);
    rows_->Gather(LimitsOf(wql), result);
  }
  rows_->Replace(std::move(utf8), std::move(result.rows));
  return ReportStatus(wql, result.status);
}

bool WMIClient::Next() {
  return rows_->Next();
}

template <typename Value>
std::int32_t WMIClient::GetProperty(const std::wstring& property, Value& value) const {
  if (rows_->Current() == nullptr) return kPropertyNotFound;
  const std::string name = text::ToUtf8(property);
  const Disturbance met = simulation::Announce(name, rows_->Wql(),
                                               {Disturbance::kFails, Disturbance::kThrows, Disturbance::kNull,
                                                Disturbance::kEmpty, Disturbance::kAbsurd, Disturbance::kEndlessText});
  if (met == Disturbance::kFails) return kRefused;
  if (const std::optional<WmiValue> disturbed = Disturbed(met)) return ChangeType(*disturbed, value);
  const simulation::WmiProperty* const found = simulation::FindProperty(*rows_->Current(), name);
  if (found == nullptr) return kPropertyNotFound;
  return ChangeType(AsWmiGivesIt(*found), value);
}

template std::int32_t WMIClient::GetProperty(const std::wstring& property, bool& value) const;
template std::int32_t WMIClient::GetProperty(const std::wstring& property, std::uint32_t& value) const;
template std::int32_t WMIClient::GetProperty(const std::wstring& property, std::uint64_t& value) const;
template std::int32_t WMIClient::GetProperty(const std::wstring& property, float& value) const;
template std::int32_t WMIClient::GetProperty(const std::wstring& property, std::wstring& value) const;

}  // namespace zt::shared::wmi
