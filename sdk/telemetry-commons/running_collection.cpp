#include "running_collection.h"

#include <mutex>
#include <set>
#include <typeindex>

namespace zt::telemetry::common {
namespace {

struct Running {
  std::mutex mutex;
  std::set<std::type_index> collectors;
};

Running& TheRunning() {
  static Running running;
  return running;
}

}  // namespace

RunningCollection::RunningCollection(const std::type_info& collector) : collector_(collector) {
  Running& running = TheRunning();
  const std::scoped_lock lock(running.mutex);
  granted_ = running.collectors.insert(collector).second;
}

RunningCollection::~RunningCollection() {
  if (!granted_) return;
  Running& running = TheRunning();
  const std::scoped_lock lock(running.mutex);
  running.collectors.erase(collector_);
}

}  // namespace zt::telemetry::common
