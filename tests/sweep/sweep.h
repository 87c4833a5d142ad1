#pragma once

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "swept_cycle.h"

namespace zt::tests {

/// What a sweep did.
struct SweepNumbers {
  std::size_t calls = 0;     // of an undisturbed cycle
  std::size_t attempts = 0;  // disturbed cycles: calls times kinds, or pairs
  std::size_t cycles = 0;    // all that were run
  double longest_ms = 0;     // of them
};

/// A part of a sweep: every `of`-th call or pair of calls, from the `number`-th on.
struct Share {
  std::size_t number = 0;
  std::size_t of = 1;

  bool Has(std::size_t place) const { return place % of == number; }
};

/// Runs a cycle with each of its calls failing in each of its ways, and with pairs of calls failing. What goes wrong
/// beyond the outcome (something is not given back, the next cycle is not as the first) is a finding.
class Sweep {
 public:
  /// Told of each attempt that is done.
  using Progress = std::function<void()>;

  explicit Sweep(SweptCycle& cycle);

  /// Every call that is in the share with every kind. The listing of what each came to, a line for all calls of one
  /// name that came to the same: "name | kinds (number of calls) | effect". An undisturbed cycle stands behind each
  /// disturbed one: some of what a cycle stores is kept for the next.
  std::vector<std::string> Singles(Share share, const Progress& progress = {});

  /// Every pair of calls that is in the share, each call with its first kind. What a pair may come to follows from what
  /// its calls come to alone, which is tried first.
  void Pairs(Share share, const Progress& progress = {});

  /// The pairs of a cycle.
  std::size_t PairCount() const { return calls_.size() * (calls_.size() - 1) / 2; }
  /// The disturbed cycles of all singles.
  std::size_t SingleCount() const;

  /// The pairs that came to more than both calls alone, each in one line: "name fails and name fails: effect". That may
  /// be as it should (the second way of a question fails behind the first), which a person has to agree to.
  const std::set<std::string>& Conjunctions() const { return conjunctions_; }

  const std::vector<std::string>& Findings() const { return findings_; }
  const SweepNumbers& Numbers() const { return numbers_; }

 private:
  // What calls of a name come to, all of them together.
  struct Reach {
    std::set<std::string> sections;
    std::set<std::string> lines;
    bool ends_cycle = false;
  };

  Outcome RunTimed(const Plan& plan, std::vector<Call>* met = nullptr);
  Effect Try(const Plan& plan, std::vector<Call>* met = nullptr);
  void CheckNextCycle(const std::string& after);
  void CheckNothingLeaks(const Plan& plan, const std::string& what);
  LiveThings Settled(const Plan& plan);
  void LearnReach();
  void TryPair(std::size_t first, std::size_t second);
  void Find(const std::string& what, const std::string& finding);

  SweptCycle& cycle_;
  std::vector<Call> calls_;
  Outcome undisturbed_;
  LiveThings live_;
  std::map<std::string, Reach> reach_;  // by the call's name
  std::set<std::string> conjunctions_;
  std::vector<std::string> findings_;
  SweepNumbers numbers_;
};

}  // namespace zt::tests
