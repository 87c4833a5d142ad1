// The sweep as a program, for scripts/sweep: sweep singles CYCLE | sweep pairs CYCLE SHARE OF
#include <cstdio>
#include <exception>
#include <iostream>
#include <string>
#include <vector>

#include "sweep.h"

namespace zt::tests {
namespace {

void Report(const Sweep& sweep) {
  for (const std::string& finding : sweep.Findings()) std::cout << "finding: " << finding << '\n';
  const SweepNumbers& numbers = sweep.Numbers();
  std::cout << "numbers: calls=" << numbers.calls << " attempts=" << numbers.attempts << " cycles=" << numbers.cycles
            << " findings=" << sweep.Findings().size() << " longest_ms=" << numbers.longest_ms << std::endl;
}

int Main(const std::vector<std::string>& arguments) {
  const std::unique_ptr<SweptCycle> cycle = MakeCycle(arguments.at(1));
  Sweep sweep(*cycle);
  std::size_t done = 0;
  const auto progress = [&done] {
    constexpr std::size_t kStep = 100;
    if (++done % kStep == 0) std::cout << "done: " << done << std::endl;
  };
  if (arguments.at(0) == "singles") {
    std::cout << "total: " << sweep.SingleCount() << std::endl;
    for (const std::string& line : sweep.Singles({}, progress)) std::cout << "line: " << line << '\n';
  } else {
    const Share share{std::stoul(arguments.at(2)), std::stoul(arguments.at(3))};
    std::cout << "total: " << sweep.PairCount() / share.of << std::endl;
    sweep.Pairs(share, progress);
    for (const std::string& line : sweep.Conjunctions()) std::cout << "line: " << line << '\n';
  }
  Report(sweep);
  return sweep.Findings().empty() ? 0 : 1;
}

}  // namespace
}  // namespace zt::tests

int main(int count, char** arguments) {
  try {
    return zt::tests::Main({arguments + 1, arguments + count});
  } catch (const std::exception& error) {
    std::cerr << "sweep: " << error.what() << '\n';
    return 2;
  }
}
