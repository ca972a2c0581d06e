// The virtual world's clock: a turn jumps to the next due timer or outside event, so an hour of waiting takes no time
// and every run is the same to the microsecond.
#pragma once

#include <functional>
#include <stdexcept>
#include <vector>

#include "platform/event_loop.h"

namespace kvr::platform {

// Something outside the program that acts by itself at known times, such as a wire with bytes on it.
class VirtualSource {
 public:
  virtual ~VirtualSource() = default;
  virtual std::optional<Instant> nextDue() const = 0;
  virtual void advanceTo(Instant now) = 0;  // does all that is due up to `now`
};

// A wait for what can never come: no timer is armed and nothing outside will act.
class StalledWorld : public std::logic_error {
 public:
  StalledWorld() : std::logic_error("the virtual world waits for what can never come") {}
};

class VirtualLoop : public EventLoop {
 public:
  Instant now() const override { return now_; }

  void addSource(VirtualSource& source) { sources_.push_back(&source); }
  void removeSource(VirtualSource& source);

  // The user does something at a time from now; it is queued as a gesture then.
  void after(Millis time, std::function<void()> gesture);

  // Runs turns until `done` answers true. False: `limit` from now has passed, or nothing is left that could happen.
  bool runUntil(const std::function<bool()>& done, Millis limit);
  // Lets the time pass.
  void runFor(Millis time);

  // The program is held up until then, as by a call that blocks: the world goes on, nothing is dispatched.
  void blockUntil(Instant until) {
    if (until > now_) advance(until);
  }

  // Sleeps since the start: a wait that polls shows here.
  std::uint64_t sleeps() const { return sleeps_; }

 protected:
  void sleepUntil(std::optional<Instant> due) override;

 private:
  struct Plan {
    Instant when;
    std::function<void()> gesture;
  };
  std::optional<Instant> nextOutside() const;
  void advance(Instant to);
  Instant now_{0};
  std::vector<VirtualSource*> sources_;
  std::vector<Plan> plans_;  // by time, equal times in the order in which they were made
  std::uint64_t sleeps_ = 0;
};

}  // namespace kvr::platform
