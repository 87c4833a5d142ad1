#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <ostream>
#include <string>
#include <thread>
#include <vector>

#include "host/command.h"

namespace zt::telemetry::host {

/// What one collection has shown.
struct LivePass {
  std::uint64_t number = 0;  // from 1; 0 before the first one
  std::vector<std::string> lines;
  std::string failure;  // UTF-8; empty where there was none
  std::chrono::milliseconds took{0};
};

/// Collections of live records, one after the other, on a thread of their own: what is asked of a machine can take its
/// time. They find no stored samples, take none, and show what the consent of the command's settings includes.
class LivePasses {
 public:
  /// `on_pass` is called on that thread behind each collection. Throws `Failure` with wrong usage for a machine or a
  /// plugin that cannot be used.
  LivePasses(const WatchCommand& command, std::function<void()> on_pass);
  /// Waits for the collection that runs.
  ~LivePasses();
  LivePasses(const LivePasses&) = delete;
  LivePasses& operator=(const LivePasses&) = delete;

  LivePass Newest() const;
  /// No further collection begins. Tells on `err` what is waited for, where one takes longer.
  void Stop(std::ostream& err);

 private:
  class Collector;

  void Run();
  bool WaitForNext(std::chrono::steady_clock::time_point begin);

  std::chrono::seconds every_;
  std::function<void()> on_pass_;
  std::unique_ptr<Collector> collector_;
  mutable std::mutex mutex_;
  std::condition_variable changed_;
  LivePass newest_;
  bool stops_ = false;
  bool ended_ = false;
  std::thread thread_;
};

}  // namespace zt::telemetry::host
