#pragma once

#include <string>

#include "platform/library.h"
#include "samplers/gpu/adlx_api.h"
#include "zt/telemetry/common/error.h"
#include "zt/zt_collector_export.h"

namespace zt::telemetry::collector::performancesamples {

/// AMD's device library (ADLX): loaded and started when first asked for, stopped and unloaded with this object.
class ZT_COLLECTOR_EXPORT ADLXHelper {
 public:
  ADLXHelper();
  /// Every interface that the library gave must be released by then.
  ~ADLXHelper();
  ADLXHelper(const ADLXHelper&) = delete;
  ADLXHelper& operator=(const ADLXHelper&) = delete;

  /// Starts the library. Success has the text "No error"; the failure (kind 5, the library's result, 3 where the
  /// library or one of its six functions is missing) "Error while initializing ADLX lib".
  common::Error Start();

  /// Whether the library is on this machine, as the last start found it.
  bool IsLoaded() const { return static_cast<bool>(library_); }

  /// Not null once the start succeeded.
  adlx::IADLXSystem* System() const { return system_; }

  /// The library's version, as it names it; empty before the start.
  const std::string& Version() const { return version_; }

 private:
  bool FindLibrary();
  ADLX_RESULT Initialize();

  platform::Library library_;
  adlx::Functions functions_;
  std::string version_;
  adlx::IADLXSystem* system_ = nullptr;
};

}  // namespace zt::telemetry::collector::performancesamples
