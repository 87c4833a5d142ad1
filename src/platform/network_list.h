#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

/// The system's network list: the networks that this machine is or was connected to.
namespace zt::telemetry::collector::performancesamples::platform {

/// A network of the list. Each operation is one question to the system; an answer that is absent is a call that failed.
/// Used under COM.
class ListedNetwork {
 public:
  struct Handle;
  explicit ListedNetwork(std::unique_ptr<Handle> handle);
  ~ListedNetwork();
  ListedNetwork(ListedNetwork&&) noexcept;
  ListedNetwork& operator=(ListedNetwork&&) noexcept;

  /// The adapters of the network's connections, "{GUID}" in capitals. A connection that does not tell its adapter is
  /// left out; a failure ends the list.
  std::vector<std::wstring> ConnectionAdapters() const;

  std::optional<bool> IsConnected() const;
  std::optional<bool> IsConnectedToInternet() const;

  /// As the platform numbers it: 0 public, 1 private, 2 authenticated by a domain.
  std::optional<std::int32_t> Category() const;

 private:
  std::unique_ptr<Handle> handle_;
};

/// What became of asking for the list.
struct NetworkList {
  enum class Outcome {
    kListed,
    kNoManager,  // the list's manager cannot be created
    kNotListed,  // the manager does not give the list
  };

  Outcome outcome = Outcome::kListed;
  std::int32_t status = 0;              // the failed call's HRESULT
  std::vector<ListedNetwork> networks;  // kListed; up to the first that cannot be fetched
};

/// All networks, connected or not. Needs COM on this thread.
NetworkList ListNetworks();

}  // namespace zt::telemetry::collector::performancesamples::platform
