// One serial port, several users of it: a run with a chip or a board, the terminal with its register monitor, the demo
// routine. Who holds the port supplies the receiver, so there are no receive modes besides this one.
//
// The head of the receive event lives here: the first waiting byte starts a one-shot of 10 ms, which gathers a small
// frame into one event; when it fires, the receiver of whoever holds the port *then* handles all that waits, in order.
// A holder that awaits an answer may end the gathering as soon as the answer is whole: it looks at what waits each time
// that bytes come.
// A receiver is never re-entered: bytes that come while it runs start the next one-shot.
#pragma once

#include "platform/event_loop.h"
#include "platform/serial_link.h"

namespace kvr::engine {

class PortHolder {
 public:
  virtual ~PortHolder() = default;
  // At least one byte waits at the port.
  virtual void bytesWait() = 0;
  // Whether the bytes that wait complete the answer that it waits for. They are looked at only, not taken.
  virtual bool answerIsWhole() { return false; }
  // The open port went away (an adapter pulled out). It is closed already.
  virtual void portVanished(const platform::PortError& error) = 0;
  // Somebody else takes the port, open or closed.
  virtual void portLost() {}
};

class PortLease {
 public:
  static constexpr platform::Millis kGatherTime{10};

  PortLease(platform::EventLoop& loop, platform::SerialLink& link);

  // Takes the port from whoever has it, who is told first. Closes nothing by itself.
  void hold(PortHolder& holder);
  // Gives it back; nothing when somebody else holds it by now.
  void release(const PortHolder& holder);
  bool heldBy(const PortHolder& holder) const { return holder_ == &holder; }

  platform::SerialLink& link() { return link_; }
  const platform::SerialLink& link() const { return link_; }

  // Closes the port and takes back a receive event that has not been handled yet.
  void close();
  // Empties the receive queue and takes back a receive event that has not been handled yet.
  void clearIn();
  // Ends the gathering when the holder has all that it waits for; for one that begins to wait.
  void look();
  // Takes back the receive event only; bytes that wait stay and are handled with the next ones that come.
  void withdraw() { gather_.stop(); }

  // When bytes last came in; for waits that must not cut a frame in two.
  platform::Instant lastByteAt() const { return lastByteAt_; }
  // When the first of the bytes came that are gathered, or were last.
  platform::Instant gatherBegan() const { return gatherBegan_; }
  // True from the first waiting byte until the receiver has been called.
  bool gathering() const { return gather_.isActive(); }

 private:
  void bytesCame();
  void gather();
  void deliver();
  platform::EventLoop& loop_;
  platform::SerialLink& link_;
  PortHolder* holder_ = nullptr;
  platform::Timer gather_;
  platform::Instant lastByteAt_{-std::chrono::hours(1)};  // none yet
  platform::Instant gatherBegan_{0};
  bool delivering_ = false;
};

}  // namespace kvr::engine
