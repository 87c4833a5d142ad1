#pragma once

#include <cstddef>

#include "zt/zt_commons_export.h"

namespace zt::shared::plugin {

/// Gives out memory that belongs to the host, for results whose size only the plugin knows.
class ZT_COMMONS_EXPORT PluginBufferAllocator {
 public:
  virtual ~PluginBufferAllocator();
  /// `size` bytes, or null when there are none. The host frees them.
  virtual char* Allocate(std::size_t size) const = 0;
};

/// What a host calls on the object that a plugin's `LoadPlugin` returns, through the table of virtual operations: the
/// order of the declarations in this chain of classes is the binary interface.
class ZT_COMMONS_EXPORT IPluginModule {
 public:
  /// Bytes that a buffer given to `Execute(params, result)` must have.
  static constexpr std::size_t kResultCapacity = 4096;

  /// Runs the plugin once. `params`: JSON text with the parameters. `result`: buffer of `kResultCapacity` bytes that
  /// receives the outcome as zero-terminated JSON text; may be null.
  virtual void Execute(const char* params, char* result) = 0;
  virtual ~IPluginModule();
};

/// A module that can also answer in a buffer of the host's making.
class ZT_COMMONS_EXPORT IDynamicPluginModule : public IPluginModule {
 public:
  using IPluginModule::Execute;
  /// Runs the plugin once; `result` is set to a buffer from `allocator` that holds the outcome as zero-terminated JSON
  /// text, null when the allocator has no memory.
  virtual void Execute(const char* params, char*& result, const PluginBufferAllocator& allocator) = 0;
  ~IDynamicPluginModule() override;
};

}  // namespace zt::shared::plugin
