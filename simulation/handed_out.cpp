#include "simulation/handed_out.h"

namespace zt::simulation {

std::map<std::string, std::int64_t>& HandedOut() {
  static std::map<std::string, std::int64_t> things;
  return things;
}

}  // namespace zt::simulation
