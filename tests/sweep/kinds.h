#pragma once

#include <string>

#include "simulation/calls.h"

namespace zt::tests {

using simulation::Call;
using simulation::Disturbance;

/// A disturbance in a word, as the agreed listings have it.
inline const char* KindName(Disturbance kind) {
  switch (kind) {
    case Disturbance::kNone:
      return "nothing";
    case Disturbance::kFails:
      return "fails";
    case Disturbance::kThrows:
      return "throws";
    case Disturbance::kNull:
      return "null";
    case Disturbance::kEmpty:
      return "empty";
    case Disturbance::kAbsurd:
      return "absurd";
    case Disturbance::kEndlessText:
      return "endless text";
    case Disturbance::kEndlessRows:
      return "endless rows";
    case Disturbance::kBusy:
      return "busy";
    case Disturbance::kNoRoom:
      return "no room";
  }
  return "";
}

}  // namespace zt::tests
