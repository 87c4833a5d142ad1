#include "query_observer.h"

#include <utility>

#include "zt/shared/wmi/wmi_client.h"

namespace zt::shared::wmi {
namespace {

std::function<void(const std::wstring&)>& Observer() {
  static std::function<void(const std::wstring&)> observer;
  return observer;
}

}  // namespace

void ObserveQueries(std::function<void(const std::wstring& wql)> observer) {
  Observer() = std::move(observer);
}

void AnnounceQuery(const std::wstring& wql) {
  if (Observer()) Observer()(wql);
}

}  // namespace zt::shared::wmi
