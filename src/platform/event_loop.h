// The one place where the program waits. It keeps what has happened (bytes at a port, timers that fell due, gestures of
// the user) in one order and hands it out one thing a turn, so that a conversation can be written straight down: send,
// run turns until a flag has changed, look at the flag.
//
// A turn (`runOnce`) handles the first thing that is ready, in the order: port events, timers (by due time, then by
// arming), gestures; when nothing is ready it sleeps until something is. Handlers may run turns themselves.
// What a clock is and how to sleep is the world's business: see virtual/virtual_loop.h and qt/qt_loop.h.
#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <set>
#include <utility>

namespace kvr::platform {

using Micros = std::chrono::microseconds;
using Millis = std::chrono::milliseconds;
using Instant = std::chrono::microseconds;  // since an arbitrary start; never goes back

class Timer;
class PortEvent;

class EventLoop {
 public:
  EventLoop() = default;
  virtual ~EventLoop() = default;
  EventLoop(const EventLoop&) = delete;
  EventLoop& operator=(const EventLoop&) = delete;

  virtual Instant now() const = 0;

  // One turn. Returns after at most one handler has run; may return without one (a sleep that ended early).
  void runOnce();

  // Queues a gesture of the user (a press, a pick, typed text, a drop). It runs when no byte and no timer is due.
  void post(std::function<void()> gesture);

  // Handles everything that is ready now, without sleeping; for a world whose own loop idles. True when something ran.
  bool dispatchReady();

  // The time at which the next timer falls due.
  std::optional<Instant> nextTimer() const;

 protected:
  // Sleeps until `due` (none: without limit) or until something from outside may have happened.
  virtual void sleepUntil(std::optional<Instant> due) = 0;
  // Something was queued or a timer was armed; a world that idles in another loop wakes up here.
  virtual void scheduleChanged() {}
  // Handles the first thing that is ready. False: nothing was.
  bool dispatchOne();
  bool somethingReady() const;

 private:
  friend class Timer;
  friend class PortEvent;
  struct Entry {
    Instant due;
    std::uint64_t order;
    Timer* timer;
    bool operator<(const Entry& other) const { return std::pair(due, order) < std::pair(other.due, other.order); }
  };
  std::set<Entry> timers_;
  std::deque<PortEvent*> portEvents_;
  std::deque<std::function<void()>> gestures_;
  std::uint64_t armings_ = 0;
};

// A timer that belongs to whoever holds it. One-shot timers turn themselves off before the handler runs; periodic ones
// keep their beat. Destroying a timer takes it back.
class Timer {
 public:
  enum class Kind { OneShot, Periodic };
  explicit Timer(EventLoop& loop, std::function<void()> onTick = {}, Kind kind = Kind::OneShot);
  ~Timer();
  Timer(const Timer&) = delete;
  Timer& operator=(const Timer&) = delete;

  void setInterval(Millis interval) { interval_ = interval; }
  Millis interval() const { return interval_; }
  void start();                 // (re)arms: due one interval from now
  void start(Millis interval);  // the same with a new interval
  void stop();
  bool isActive() const { return active_; }
  void onTick(std::function<void()> handler) { onTick_ = std::move(handler); }

 private:
  friend class EventLoop;
  void arm(Instant due);
  void fire();
  EventLoop& loop_;
  std::function<void()> onTick_;
  Kind kind_;
  Millis interval_{1000};
  bool active_ = false;
  Instant due_{};
  std::uint64_t order_ = 0;
};

// What a port raises when bytes wait. Raised twice before it was handled, it is one event; `withdraw` takes back an
// event that has not been handled yet.
class PortEvent {
 public:
  PortEvent(EventLoop& loop, std::function<void()> handler);
  ~PortEvent();
  PortEvent(const PortEvent&) = delete;
  PortEvent& operator=(const PortEvent&) = delete;
  void raise();
  void withdraw();
  bool pending() const { return pending_; }

 private:
  friend class EventLoop;
  EventLoop& loop_;
  std::function<void()> handler_;
  bool pending_ = false;
};

// Runs turns until the time has passed. Each delay owns its timer: an inner delay never ends an outer one.
void delay(EventLoop& loop, Millis time);

}  // namespace kvr::platform
