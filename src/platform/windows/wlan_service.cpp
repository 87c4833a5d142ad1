#include "platform/wlan_service.h"

#include <utility>

#include "platform/windows/wlan_session.h"

namespace zt::telemetry::collector::performancesamples::platform {

struct WlanService::Handle {
  WlanLibrary library;  // the first member: the session ends before it
  WlanSession session{library.Functions()};
};

WlanService::WlanService(std::unique_ptr<Handle> handle) : handle_(std::move(handle)) {}

WlanService::~WlanService() = default;
WlanService::WlanService(WlanService&&) noexcept = default;
WlanService& WlanService::operator=(WlanService&&) noexcept = default;

WlanOpening WlanService::Open() {
  auto handle = std::make_unique<Handle>();
  if (!handle->session.IsOpen()) return {std::nullopt, handle->session.Status()};
  return {WlanService(std::move(handle))};
}

std::optional<std::vector<std::wstring>> WlanService::Interfaces() const {
  return handle_->session.Interfaces();
}

std::optional<WlanConnection> WlanService::CurrentConnection(const std::wstring& interface_guid) const {
  return handle_->session.CurrentConnection(interface_guid);
}

std::optional<std::vector<std::wstring>> WlanService::ProfileNames(const std::wstring& interface_guid) const {
  return handle_->session.ProfileNames(interface_guid);
}

std::optional<WlanProfile> WlanService::Profile(const std::wstring& interface_guid, const std::wstring& name) const {
  return handle_->session.Profile(interface_guid, name);
}

std::optional<std::uint32_t> WlanService::Channel(const std::wstring& interface_guid) const {
  return handle_->session.Channel(interface_guid);
}

}  // namespace zt::telemetry::collector::performancesamples::platform
