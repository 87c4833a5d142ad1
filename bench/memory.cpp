#include "memory.h"

#include <fstream>
#include <string>

namespace zt::bench {

void ResetPeakMemory() {
  constexpr const char* kPeakOnly = "5";
  std::ofstream("/proc/self/clear_refs") << kPeakOnly;
}

double PeakMemoryMib() {
  constexpr double kKibPerMib = 1024;
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;) {
    double kib = 0;
    if (word == "VmHWM:" && status >> kib) return kib / kKibPerMib;
  }
  return 0;
}

}  // namespace zt::bench
