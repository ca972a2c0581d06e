#include "userpath/demo_line.h"

namespace kvr::userpath {
namespace {

using engine::Millis;

constexpr Millis kSilence{50};        // a reply that stops arriving for this long has ended
constexpr Millis kLongestReply{500};  // and one that goes on for this long is none

}  // namespace

bool DemoLine::arriving() const {
  if (!isOpen() || rx_.frameOk) return false;
  return lease().gathering() || (rx_.midFrame() && services().loop.now() < lease().lastByteAt() + kSilence);
}

std::optional<DemoReply> DemoLine::awaitReply(Millis limit) {
  platform::Timer timer(loop());
  timer.start(limit);
  while (timer.isActive() && !rx_.frameOk && !stopped()) loop().runOnce();
  const platform::Instant end = loop().now() + kLongestReply;
  while (arriving() && loop().now() < end && !stopped()) {
    platform::Timer step(loop());
    step.start(kSilence);
    loop().runOnce();
  }
  return rx_.frameOk ? std::optional(rx_.buffer) : std::nullopt;
}

std::optional<DemoReply> DemoLine::exchange(std::span<const std::uint8_t> frame, Millis limit) {
  clearReceiveState();
  rx_.clear();
  write(frame);
  return awaitReply(limit);
}

bool DemoLine::pollUntilReply(std::uint8_t command, Millis pace) {
  while (!stopped() && isOpen()) {
    rx_.clear();  // what some noise has begun must not swallow the reply
    write(buildDemoFrame(command));
    if (awaitReply(pace)) return true;
  }
  return false;
}

}  // namespace kvr::userpath
