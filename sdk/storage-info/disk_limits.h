#pragma once

#include <chrono>

namespace zt::shared::storage {

/// How long a disk's driver may take for one answer, and all disks of a machine together. Most answers are the system's
/// own, from memory; a disk that sleeps may have to wake up for one.
inline constexpr std::chrono::milliseconds kAnswerLimit{5'000};
inline constexpr std::chrono::milliseconds kAllDisksLimit{15'000};

}  // namespace zt::shared::storage
