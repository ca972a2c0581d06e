// One serial port, several masters: the programming engine (boards and chips), the terminal with its register monitor,
// and the demo routine in a user's firmware. Who holds the port supplies the receiver, so there are no receive modes
// besides this one.
//
// The head of the receive event lives here: the first waiting byte starts a one-shot of 10 ms, which gathers a small
// frame into one event; when it fires, the receiver of the master who holds the port *then* handles all that waits, in
// order. A receiver is never re-entered: bytes that come while it runs start the next one-shot.
#pragma once

#include <array>
#include <functional>

#include "platform/event_loop.h"
#include "platform/serial_link.h"

namespace kvr::engine {

enum class Master { Engine, Tool, Demo };

class PortLease {
 public:
  static constexpr platform::Millis kGatherTime{10};

  PortLease(platform::EventLoop& loop, platform::SerialLink& link);

  // The engine holds the port from the start. Taking it over closes nothing: who takes it says what happens to the
  // port.
  Master holder() const { return holder_; }
  void hold(Master master);

  // Called with at least one byte waiting (when nothing waits any more, not at all). It reads from `link()`.
  void setReceiver(Master master, std::function<void()> receiver);
  // The open port went away (an adapter pulled out). It is closed already. Only the holder is told, from the event
  // loop.
  void onVanished(Master master, std::function<void(const platform::PortError&)> told);

  platform::SerialLink& link() { return link_; }

  // Closes the port and takes back a receive event that has not been handled yet.
  void close();
  // Empties the receive queue and takes back a receive event that has not been handled yet.
  void clearIn();
  // Takes back the receive event only; bytes that wait stay and are handled with the next ones that come.
  void withdraw() { gather_.stop(); }

  // When bytes last came in; for waits that must not cut a frame in two.
  platform::Instant lastByteAt() const { return lastByteAt_; }
  // True from the first waiting byte until the receiver has been called.
  bool gathering() const { return gather_.isActive(); }

 private:
  void bytesWait();
  void deliver();
  platform::EventLoop& loop_;
  platform::SerialLink& link_;
  Master holder_ = Master::Engine;
  std::array<std::function<void()>, 3> receivers_;
  std::array<std::function<void(const platform::PortError&)>, 3> vanished_;
  platform::Timer gather_;
  platform::Instant lastByteAt_{0};
  bool delivering_ = false;
};

}  // namespace kvr::engine
