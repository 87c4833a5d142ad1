// Loads the plugin, collects once and unloads it, many times in one process that shares nothing with it. Shows what the
// process holds after the first rounds and later, and fails where that grew.
//
//   endurance_reloads [ROUNDS]      20 when left out
#include <algorithm>
#include <cstdint>
#include <exception>
#include <iostream>
#include <stdexcept>

#include "tests/endurance/process_figures.h"
#include "tests/endurance/progress.h"
#include "tests/shipped_plugin/bare_host/bare_host.h"

namespace zt::endurance {
namespace {

// What the system and the compiler's libraries make when they are used for the first time is there by then.
constexpr std::int64_t kFirstRounds = 100;
constexpr std::int64_t kMoments = 10;

void LoadCollectUnload() {
  tests::BarePlugin plugin;
  const std::string outcome = plugin.Collect();
  if (outcome.find(tests::kSuccess) == std::string::npos) throw std::runtime_error("a collection failed: " + outcome);
}

int Main(std::int64_t rounds) {
  const Progress progress("rounds", rounds);
  const std::int64_t first = std::min(kFirstRounds, rounds / 2);
  FigureTable table;
  for (std::int64_t done = 1; done <= rounds; ++done) {
    LoadCollectUnload();
    progress.Tell(done);
    const bool is_moment = done == first || done == rounds || done % (rounds / kMoments + 1) == 0;
    if (is_moment && done >= first) table.Add(std::to_string(done), ProcessFigures(done));
  }
  return Report(table);
}

}  // namespace
}  // namespace zt::endurance

int main(int count, char** values) {
  try {
    return zt::endurance::Main(zt::endurance::NumberArgument(count, values, 1, 20));
  } catch (const std::exception& error) {
    std::cerr << "endurance_reloads: " << error.what() << "\n";
    return 2;
  }
}
