#include "zt/shared/wmi/wmi_client.h"

#include <zt/text/wide_text.h>

#include <cstddef>
#include <type_traits>
#include <utility>
#include <vector>

#include "query_observer.h"
#include "simulated/change_type.h"
#include "simulation/wql.h"

namespace zt::shared::wmi {
namespace {

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

}  // namespace

class WMIClient::Rows {
 public:
  void Replace(std::vector<simulation::WmiRow> rows) {
    rows_ = std::move(rows);
    taken_ = 0;
    current_ = nullptr;
  }

  bool Next() {
    current_ = taken_ < rows_.size() ? &rows_[taken_++] : nullptr;
    return current_ != nullptr;
  }

  const simulation::WmiRow* Current() const { return current_; }

 private:
  std::vector<simulation::WmiRow> rows_;
  std::size_t taken_ = 0;
  const simulation::WmiRow* current_ = nullptr;
};

// Every namespace shows the same tables.
WMIClient::WMIClient(const std::wstring& /*wmi_namespace*/) : rows_(std::make_unique<Rows>()) {}

WMIClient::~WMIClient() = default;

std::int32_t WMIClient::ExecQuery(const std::wstring& wql) {
  AnnounceQuery(wql);
  simulation::WqlResult result = simulation::RunQuery(text::ToUtf8(wql));
  rows_->Replace(std::move(result.rows));
  return ReportStatus(wql, result.status);
}

bool WMIClient::Next() {
  return rows_->Next();
}

template <typename Value>
std::int32_t WMIClient::GetProperty(const std::wstring& property, Value& value) const {
  if (rows_->Current() == nullptr) return kPropertyNotFound;
  const simulation::WmiProperty* const found = simulation::FindProperty(*rows_->Current(), text::ToUtf8(property));
  if (found == nullptr) return kPropertyNotFound;
  return ChangeType(AsWmiGivesIt(*found), value);
}

template std::int32_t WMIClient::GetProperty(const std::wstring& property, bool& value) const;
template std::int32_t WMIClient::GetProperty(const std::wstring& property, std::uint32_t& value) const;
template std::int32_t WMIClient::GetProperty(const std::wstring& property, std::uint64_t& value) const;
template std::int32_t WMIClient::GetProperty(const std::wstring& property, float& value) const;
template std::int32_t WMIClient::GetProperty(const std::wstring& property, std::wstring& value) const;

}  // namespace zt::shared::wmi
