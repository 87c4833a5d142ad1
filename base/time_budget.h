#pragma once

#include <algorithm>
#include <chrono>

namespace zt::base {

/// The time that several pieces of work may take together. What passes between them does not count.
template <typename Clock>
class TimeBudgetBy {
 public:
  explicit TimeBudgetBy(std::chrono::milliseconds limit) : left_(limit) {}
  TimeBudgetBy(const TimeBudgetBy&) = delete;
  TimeBudgetBy& operator=(const TimeBudgetBy&) = delete;

  /// What is left, 0 once it is spent; in whole milliseconds, rounded up.
  std::chrono::milliseconds Left() const {
    return std::max(std::chrono::ceil<std::chrono::milliseconds>(left_), std::chrono::milliseconds::zero());
  }

  bool IsSpent() const { return left_ <= left_.zero(); }

  /// One piece of work: the time of its life is taken off the budget, however it ends.
  class Spending {
   public:
    explicit Spending(TimeBudgetBy& budget) : budget_(budget), start_(Clock::now()) {}
    ~Spending() { budget_.left_ -= Clock::now() - start_; }
    Spending(const Spending&) = delete;
    Spending& operator=(const Spending&) = delete;

   private:
    TimeBudgetBy& budget_;
    typename Clock::time_point start_;
  };

 private:
  typename Clock::duration left_;
};

/// By the clock that no change of the system's time moves.
using TimeBudget = TimeBudgetBy<std::chrono::steady_clock>;

}  // namespace zt::base
