#pragma once

// The plugin's entry points, out of the file that has them. It stays loaded until the program ends.
struct PluginLibrary {
  void* load_plugin = nullptr;  // each null where the file has none, or is none
  void* initialize_logger = nullptr;
};

PluginLibrary OpenPlugin(const char* full_path);
