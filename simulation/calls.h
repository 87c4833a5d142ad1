#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "zt/zt_simulation_export.h"

namespace zt::simulation {

/// What a call meets in place of its answer from the machine's facts.
enum class Disturbance : std::uint8_t {
  kNone,         // it is answered
  kFails,        // the failing status of its interface; no answer where the interface has no status
  kThrows,       // an exception out of the library's client (std::system_error)
  kNull,         // success with a null in the place of a text, a figure or an interface
  kEmpty,        // success with an empty text, or without rows
  kAbsurd,       // success with a size, a count or a figure that no machine has
  kEndlessText,  // success with a text that is as long as can be, without its end where the interface lets that happen
  kEndlessRows,  // rows without end, until the limits of the one who asks cut them
  kBusy,         // somebody else holds it
  kNoRoom,       // the disk is full
};

/// A call that the machine is about to answer.
struct Call {
  std::size_t number = 0;  // in the order of the calls, from 1 on, since they are watched
  std::string name;
  std::vector<Disturbance> kinds;  // those that it can meet
};

/// Says what a call meets. `kNone`, and what is none of the call's kinds, leaves it undisturbed. May take its time: the
/// call takes as long.
using CallWatcher = std::function<Disturbance(const Call&)>;

/// Lets `watcher` see every call of the machine's services, device libraries, vendors' libraries and WMI from here on,
/// numbered anew. An empty function ends it. For one thread.
ZT_SIMULATION_EXPORT void WatchCalls(CallWatcher watcher);

/// For the simulated definitions: tells the watcher of a call, and returns what it is to meet. Throws itself where that
/// is an exception. `kNone` as long as nobody watches.
ZT_SIMULATION_EXPORT Disturbance Announce(std::string_view name, std::initializer_list<Disturbance> kinds);

/// The same for a call whose name has a second part, which is put together only when somebody watches.
ZT_SIMULATION_EXPORT Disturbance Announce(std::string_view name, std::string_view of,
                                          std::initializer_list<Disturbance> kinds);

/// The same for a call that can only fail: whether it does.
inline bool Fails(std::string_view name) {
  return Announce(name, {Disturbance::kFails}) == Disturbance::kFails;
}

/// A text as long as no device has one.
ZT_SIMULATION_EXPORT const std::string& EndlessText();

}  // namespace zt::simulation
