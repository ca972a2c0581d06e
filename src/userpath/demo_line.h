// The line to the demo routine of a running program: frames out, replies in, waits, Stop.
#pragma once

#include <span>

#include "engine/target_link.h"
#include "userpath/demo_frames.h"

namespace kvr::userpath {

class DemoLine {
 public:
  static constexpr engine::Millis kReplyLimit{200};

  explicit DemoLine(engine::TargetLink& link);

  DemoReceiver rx;
  bool demoStop = false;  // the person pressed Stop
  bool stopped() const { return demoStop || link_.stopRequested; }
  void stop() { demoStop = link_.stopRequested = true; }

  // Takes the port over from the engine, and gives it back.
  void hold();
  void release();

  void clearReceiveState();
  void sendDemoFrame(std::uint8_t command);
  // Until a reply, the limit or Stop; true: a reply lies in `rx`. The limit does not cut a reply that is arriving.
  bool waitReply(engine::Millis limit);
  // Nothing received, a frame out, its reply in.
  bool exchange(std::span<const std::uint8_t> frame, engine::Millis limit);
  bool demoExchange(std::uint8_t command) { return exchange(buildDemoFrame(command), kReplyLimit); }
  // The command over and over until something answers or Stop: a program may be busy when the first ones come.
  bool pollUntilReply(std::uint8_t command, engine::Millis pace);
  // Lets the time pass; false as soon as Stop is pressed.
  bool pause(engine::Millis time);

 private:
  bool arriving() const;
  void vanished(const platform::PortError& error);
  engine::TargetLink& link_;
};

}  // namespace kvr::userpath
