#include "sweep.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace zt::tests {
namespace {

// What is made once and kept (tables of protobuf, of the C++ library) is made by then.
constexpr int kWarmUps = 3;

std::string Describe(const Call& call, Disturbance kind) {
  return Shortened(call.name) + " (call " + std::to_string(call.number) + ") " + KindName(kind);
}

// What came to the same for calls of one name: which kinds of disturbance, and of how many calls each.
struct Line {
  std::size_t first_number = 0;
  std::map<std::string, std::size_t> kinds;
};

// By the name and what it came to.
using Lines = std::map<std::pair<std::string, std::string>, Line>;

std::string ToText(const std::map<std::string, std::size_t>& kinds) {
  std::string text;
  for (const auto& [kind, count] : kinds) {
    text += (text.empty() ? "" : ", ") + kind + (count > 1 ? " (" + std::to_string(count) + ")" : "");
  }
  return text;
}

// In the order in which a cycle comes to them first.
std::vector<std::string> Listing(const Lines& lines) {
  std::vector<std::pair<std::size_t, std::string>> sorted;
  for (const auto& [key, line] : lines) {
    sorted.emplace_back(line.first_number, key.first + " | " + ToText(line.kinds) + " | " + key.second);
  }
  std::sort(sorted.begin(), sorted.end());
  std::vector<std::string> listing;
  for (const auto& [number, text] : sorted) listing.push_back(text);
  return listing;
}

void Add(const Effect& effect, std::set<std::string>& sections, std::set<std::string>& lines) {
  for (const auto& [name, how] : effect.sections) sections.insert(name);
  lines.insert(effect.added_lines.begin(), effect.added_lines.end());
  lines.insert(effect.missing_lines.begin(), effect.missing_lines.end());
}

}  // namespace

Sweep::Sweep(SweptCycle& cycle) : cycle_(cycle) {
  for (int i = 0; i < kWarmUps; ++i) RunTimed({});
  cycle_.Run({}, nullptr, &calls_);
  undisturbed_ = RunTimed({});
  live_ = Settled({});
  numbers_.calls = calls_.size();
}

std::size_t Sweep::SingleCount() const {
  std::size_t count = 0;
  for (const Call& call : calls_) count += call.kinds.size();
  return count;
}

Outcome Sweep::RunTimed(const Plan& plan, std::vector<Call>* met) {
  const auto start = std::chrono::steady_clock::now();
  Outcome outcome = cycle_.Run(plan, met);
  const std::chrono::duration<double, std::milli> taken = std::chrono::steady_clock::now() - start;
  numbers_.longest_ms = std::max(numbers_.longest_ms, taken.count());
  ++numbers_.cycles;
  return outcome;
}

void Sweep::Find(const std::string& what, const std::string& finding) {
  findings_.push_back(what + ": " + finding);
}

// What is alive behind a disturbed cycle and an undisturbed one: what a failed pass leaves for the next is gone.
LiveThings Sweep::Settled(const Plan& plan) {
  if (!plan.empty()) RunTimed(plan);
  RunTimed({});
  return cycle_.Live();
}

// What grows each time is lost; what grows once was made to be kept.
void Sweep::CheckNothingLeaks(const Plan& plan, const std::string& what) {
  const LiveThings now = cycle_.Live();
  if (now == live_) return;
  const LiveThings once = Settled(plan);
  const LiveThings twice = Settled(plan);
  for (const auto& [name, count] : twice) {
    const auto before = once.find(name);
    const auto first = live_.find(name);
    const std::int64_t growth = count - (before != once.end() ? before->second : 0);
    if (growth > 0 ||
        (name != "allocations" && name != "bytes of SQLite" && first != live_.end() && count > first->second)) {
      Find(what, "leaves " + name + " (" + std::to_string(count) + ")");
    }
  }
  live_ = twice;
}

void Sweep::CheckNextCycle(const std::string& after) {
  const Effect effect = Compare(undisturbed_, RunTimed({}));
  if (effect != Effect()) Find(after, "the next cycle differs: " + ToText(effect));
}

Effect Sweep::Try(const Plan& plan, std::vector<Call>* met) {
  return Compare(undisturbed_, RunTimed(plan, met));
}

std::vector<std::string> Sweep::Singles(Share share, const Progress& progress) {
  Lines lines;
  for (const Call& call : calls_) {
    if (!share.Has(call.number)) continue;
    for (const Disturbance kind : call.kinds) {
      const std::string what = Describe(call, kind);
      const Plan plan = {{call.number, kind}};
      std::vector<Call> met;
      const Effect effect = Try(plan, &met);
      if (met.size() != 1 || met[0].name != call.name) Find(what, "the cycle did not ask the same");
      CheckNextCycle(what);
      CheckNothingLeaks(plan, what);
      Line& line = lines[{Shortened(call.name), ToText(effect)}];
      if (line.first_number == 0) line.first_number = call.number;
      ++line.kinds[KindName(kind)];
      ++numbers_.attempts;
      if (progress) progress();
    }
  }
  return Listing(lines);
}

void Sweep::LearnReach() {
  for (const Call& call : calls_) {
    const Effect effect = Try({{call.number, call.kinds.front()}});
    Reach& reach = reach_[call.name];
    Add(effect, reach.sections, reach.lines);
    reach.ends_cycle = reach.ends_cycle || !effect.result.empty();
  }
}

void Sweep::TryPair(std::size_t first, std::size_t second) {
  const Call& one = calls_[first];
  const Call& other = calls_[second];
  const Plan plan = {{one.number, Disturbance::kNone}, {other.number, Disturbance::kNone}};
  std::vector<Call> met;
  const Effect effect = Try(plan, &met);
  std::string what;
  std::string names;
  for (const Call& call : met) {
    what += (what.empty() ? "" : " and ") + Describe(call, call.kinds.front());
    names += (names.empty() ? "" : " and ") + Shortened(call.name) + ' ' + KindName(call.kinds.front());
  }
  std::set<std::string> sections;
  std::set<std::string> lines;
  Add(effect, sections, lines);
  bool unknown = false;
  bool may_end = false;
  std::set<std::string> allowed_sections;
  std::set<std::string> allowed_lines;
  for (const Call& call : met) {
    const auto known = reach_.find(call.name);
    unknown = unknown || known == reach_.end();
    if (known == reach_.end()) continue;
    allowed_sections.insert(known->second.sections.begin(), known->second.sections.end());
    allowed_lines.insert(known->second.lines.begin(), known->second.lines.end());
    may_end = may_end || known->second.ends_cycle;
  }
  const bool fits = std::includes(allowed_sections.begin(), allowed_sections.end(), sections.begin(), sections.end()) &&
                    std::includes(allowed_lines.begin(), allowed_lines.end(), lines.begin(), lines.end()) &&
                    (effect.result.empty() || may_end);
  if (!fits && !unknown) conjunctions_.insert(names + ": " + ToText(effect));
  CheckNothingLeaks(plan, what);
}

void Sweep::Pairs(Share share, const Progress& progress) {
  constexpr std::size_t kPairsBetweenUndisturbedCycles = 8;
  LearnReach();
  std::size_t attempt = 0;
  for (std::size_t first = 0; first < calls_.size(); ++first) {
    for (std::size_t second = first + 1; second < calls_.size(); ++second) {
      if (!share.Has(attempt++)) continue;
      TryPair(first, second);
      if (++numbers_.attempts % kPairsBetweenUndisturbedCycles == 0) {
        CheckNextCycle("pairs up to call " + std::to_string(calls_[first].number) + " and call " +
                       std::to_string(calls_[second].number));
      }
      if (progress) progress();
    }
  }
}

}  // namespace zt::tests
