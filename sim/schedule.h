// What a device means to do later. A change of its power makes it forget all but the power changes still to come.
#pragma once

#include <algorithm>
#include <functional>
#include <optional>
#include <vector>

#include "sim/device.h"

namespace sim {

class Schedule {
 public:
  using Act = std::function<void(Micros)>;

  void add(Micros at, Act act) { plans_.push_back({at, std::move(act), false}); }
  void addPowerChange(Micros at, Act act) {
    plans_.push_back({at,
                      [this, change = std::move(act)](Micros when) {
                        std::erase_if(plans_, [](const Plan& plan) { return !plan.power; });
                        change(when);
                      },
                      true});
  }

  std::optional<Micros> nextDue() const {
    if (plans_.empty()) return std::nullopt;
    return std::min_element(plans_.begin(), plans_.end(), [](const auto& a, const auto& b) { return a.at < b.at; })->at;
  }

  // Does the first of what is due at exactly `at`; false when nothing is.
  bool doOne(Micros at) {
    const auto next = std::find_if(plans_.begin(), plans_.end(), [&](const Plan& plan) { return plan.at == at; });
    if (next == plans_.end()) return false;
    const Plan plan = std::move(*next);
    plans_.erase(next);
    plan.act(plan.at);
    return true;
  }

  // Does all that is due up to `now`, in order.
  void advanceTo(Micros now) {
    for (auto due = nextDue(); due && *due <= now; due = nextDue()) doOne(*due);
  }

 private:
  struct Plan {
    Micros at = 0;
    Act act;
    bool power = false;
  };
  std::vector<Plan> plans_;
};

}  // namespace sim
