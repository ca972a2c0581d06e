// Keeps what happens on a line, within a bound: when it is reached, the oldest data frames go first, then whatever else
// was sent or came; stages and messages stay. The first and the last 64 KiB of a trace are never thinned: they show how
// a run began and how it ended.
#pragma once

#include <functional>
#include <span>
#include <string>
#include <vector>

#include "engine/trace.h"
#include "platform/event_loop.h"

namespace kvr::engine {

class LineRecorder {
 public:
  struct Bounds {
    std::size_t most = 16 * 1024 * 1024;  // bytes of memory, as `costOf` counts them
    std::size_t kept = 64 * 1024;         // at either end
  };
  explicit LineRecorder(const platform::EventLoop& loop) : LineRecorder(loop, Bounds()) {}
  LineRecorder(const platform::EventLoop& loop, Bounds bounds) : loop_(loop), bounds_(bounds) {}

  void begin();                // forgets what was kept; times count from here on
  void end() { on_ = false; }  // nothing is kept from here on
  bool on() const { return on_; }
  const std::vector<TraceEvent>& events() const { return events_; }

  void note(TraceEvent::Kind kind, std::string text = {}, TraceEvent::Failure why = {});
  void sent(std::span<const std::uint8_t> bytes);
  void received(std::span<const std::uint8_t> bytes);

  // Each thing as it happens, before it is folded into those before it; for whoever shows a run while it goes on.
  std::function<void(const TraceEvent&)> onEvent;

  static std::size_t costOf(const TraceEvent& event) {
    return sizeof(TraceEvent) + event.bytes.size() + event.text.size();
  }

 private:
  void tell(TraceEvent event) const;
  void add(TraceEvent event);
  void thin();
  platform::Micros now() const { return loop_.now() - began_; }

  const platform::EventLoop& loop_;
  Bounds bounds_;
  platform::Instant began_{0};
  bool on_ = false;
  std::size_t cost_ = 0;
  std::vector<TraceEvent> events_;
};

}  // namespace kvr::engine
