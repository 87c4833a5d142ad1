#include "query_observer.h"

#include <utility>

#include "zt/shared/wmi/query_failures.h"
#include "zt/shared/wmi/wmi_client.h"

namespace zt::shared::wmi {
namespace {

std::function<void(const std::wstring&)>& Observer() {
  static std::function<void(const std::wstring&)> observer;
  return observer;
}

std::function<void(const std::wstring&, std::int32_t)>& FailureObserver() {
  static std::function<void(const std::wstring&, std::int32_t)> observer;
  return observer;
}

}  // namespace

void ObserveQueries(std::function<void(const std::wstring& wql)> observer) {
  Observer() = std::move(observer);
}

void AnnounceQuery(const std::wstring& wql) {
  if (Observer()) Observer()(wql);
}

void ObserveFailures(std::function<void(const std::wstring& wql, std::int32_t status)> observer) {
  FailureObserver() = std::move(observer);
}

std::int32_t ReportStatus(const std::wstring& wql, std::int32_t status) {
  if (status != kSuccess && FailureObserver()) FailureObserver()(wql, status);
  return status;
}

}  // namespace zt::shared::wmi
