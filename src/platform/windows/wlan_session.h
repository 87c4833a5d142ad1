#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/windows/wlan_functions.h"
#include "platform/wlan_service.h"

namespace zt::telemetry::collector::performancesamples::platform {

/// An open handle of the WLAN service, and what is read through it. The operations are those of `WlanService`.
class WlanSession {
 public:
  /// Opens the handle, and closes it at the end of its life. `functions` outlive it.
  explicit WlanSession(const WlanFunctions& functions);
  ~WlanSession();
  WlanSession(const WlanSession&) = delete;
  WlanSession& operator=(const WlanSession&) = delete;

  /// False when the service did not open a handle; nothing else is called then.
  bool IsOpen() const { return handle_ != nullptr; }
  /// What the service said when it was asked for a handle; 0 also when there are not all functions to ask it with.
  DWORD Status() const { return status_; }

  std::optional<std::vector<std::wstring>> Interfaces() const;
  std::optional<WlanConnection> CurrentConnection(const std::wstring& interface_guid) const;
  std::optional<std::vector<std::wstring>> ProfileNames(const std::wstring& interface_guid) const;
  std::optional<WlanProfile> Profile(const std::wstring& interface_guid, const std::wstring& name) const;
  std::optional<std::uint32_t> Channel(const std::wstring& interface_guid) const;

 private:
  struct Releaser {
    const WlanFunctions* functions;
    void operator()(void* memory) const { functions->Get<"WlanFreeMemory">()(memory); }
  };
  /// What the service handed out.
  template <typename T>
  using Owned = std::unique_ptr<T, Releaser>;

  template <typename T>
  Owned<T> Own(T* memory) const {
    return Owned<T>(memory, Releaser{&functions_});
  }

  /// The answer to a question about an interface; null when it fails, or is shorter than a `T`.
  template <typename T>
  Owned<T> Query(const std::wstring& interface_guid, WLAN_INTF_OPCODE question) const;

  const WlanFunctions& functions_;
  HANDLE handle_ = nullptr;
  DWORD status_ = ERROR_SUCCESS;
};

}  // namespace zt::telemetry::collector::performancesamples::platform
