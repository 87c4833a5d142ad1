#pragma once

#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "zt/telemetry/common/telemetry_collector_base.h"

namespace zt::tests {

/// A collector whose operations do what a test says, and that tells which of them were called, in order.
class ScriptedCollector : public telemetry::common::TelemetryCollectorBase {
 public:
  using Error = telemetry::common::Error;
  using Message = google::protobuf::Message;

  using TelemetryCollectorBase::AddSend;
  using TelemetryCollectorBase::AddStore;
  using TelemetryCollectorBase::ParamsGetEventType;

  std::function<Error()> read_source = [] { return Error(); };
  std::function<Error(const Error&)> finalize = [](const Error& outcome) { return outcome; };
  std::function<void(std::vector<std::shared_ptr<Message>>&, std::vector<std::string>&)> get_databases = [](auto&,
                                                                                                            auto&) {};
  std::vector<std::string> calls;

 protected:
  Error ReadSource() override {
    calls.push_back("ReadSource");
    return read_source();
  }
  Error Finalize(const Error& outcome) override {
    calls.push_back("Finalize");
    return finalize(outcome);
  }
  void GetDatabases(std::vector<std::shared_ptr<Message>>& messages, std::vector<std::string>& databases) override {
    calls.push_back("GetDatabases");
    get_databases(messages, databases);
  }
};

struct FreeDeleter {
  void operator()(char* memory) const { std::free(memory); }
};

/// A host's memory; it can run out.
class HostAllocator : public shared::plugin::PluginBufferAllocator {
 public:
  char* Allocate(std::size_t size) const override {
    sizes.push_back(size);
    return without_memory ? nullptr : static_cast<char*>(std::malloc(size));
  }

  bool without_memory = false;
  mutable std::vector<std::size_t> sizes;
};

/// The outcome of a call, as the text that the host receives in a buffer of its allocator.
inline std::string OutcomeText(shared::plugin::IDynamicPluginModule& module, const char* params) {
  char* result = nullptr;
  module.Execute(params, result, HostAllocator());
  const std::unique_ptr<char, FreeDeleter> owner(result);
  return result != nullptr ? result : "";
}

inline nlohmann::json OutcomeOf(shared::plugin::IDynamicPluginModule& module, const char* params) {
  return nlohmann::json::parse(OutcomeText(module, params));
}

}  // namespace zt::tests
