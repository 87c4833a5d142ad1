#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

/// The system's WLAN service, which runs the Wi-Fi interfaces.
namespace zt::telemetry::collector::performancesamples::platform {

/// The state of an interface that is connected.
inline constexpr std::int32_t kWlanStateConnected = 1;

/// A Wi-Fi link.
struct WlanConnection {
  std::int32_t state = 0;  // as the platform numbers it
  std::wstring profile_name;
  std::uint32_t phy_type = 0;        // DOT11_PHY_TYPE
  std::uint32_t signal_quality = 0;  // %
  std::uint32_t receive_rate = 0;    // kbit/s
  std::uint32_t transmit_rate = 0;   // kbit/s
};

/// Flags of a profile.
inline constexpr std::uint32_t kWlanProfileGroupPolicy = 0x1;
inline constexpr std::uint32_t kWlanProfileConnectsByItself = 0x20000;

/// The settings of a Wi-Fi network.
struct WlanProfile {
  std::wstring xml;
  std::uint32_t flags = 0;
};

struct WlanOpening;

/// An open connection to the service. Interfaces are told by their GUID, "{GUID}" in capitals. Each operation is one
/// question to the service; an answer that is absent is a call that failed, which one that succeeds without an answer
/// is too.
class WlanService {
 public:
  static WlanOpening Open();
  ~WlanService();
  WlanService(WlanService&&) noexcept;
  WlanService& operator=(WlanService&&) noexcept;

  std::optional<std::vector<std::wstring>> Interfaces() const;
  std::optional<WlanConnection> CurrentConnection(const std::wstring& interface_guid) const;
  std::optional<std::vector<std::wstring>> ProfileNames(const std::wstring& interface_guid) const;
  std::optional<WlanProfile> Profile(const std::wstring& interface_guid, const std::wstring& name) const;
  std::optional<std::uint32_t> Channel(const std::wstring& interface_guid) const;

 private:
  struct Handle;
  explicit WlanService(std::unique_ptr<Handle> handle);

  std::unique_ptr<Handle> handle_;
};

/// What became of opening the service.
struct WlanOpening {
  std::optional<WlanService> service;  // absent where it was not opened
  std::uint32_t status = 0;            // the error code of the service then; 0 where the system has no such service
};

}  // namespace zt::telemetry::collector::performancesamples::platform
