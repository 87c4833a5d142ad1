#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

#include "host/collect/loaded_plugin.h"
#include "support/recording_log.h"
#include "support/recording_sink.h"
#include "support/sample_store_fixture.h"
#include "support/temporary_folder.h"
#include "zt/shared/telemetry_storage.h"

namespace zt::tests {

/// A host process: its sink, its log, its database folder.
class ShippedPluginTest : public testing::Test {
 protected:
  ShippedPluginTest() { shared::TelemetryStorage::SetDefaultDBPath(folder_.Utf8()); }

  telemetry::host::LoadedPlugin Load() {
    return telemetry::host::LoadedPlugin(telemetry::host::DefaultPluginFile(), plog::info, log_);
  }

  TemporaryFolder folder_;
  RecordingLog log_;
  std::shared_ptr<RecordingSink> sink_ = RegisterRecordingSink();
};

}  // namespace zt::tests
