#include "userpath/demo_line.h"

namespace kvr::userpath {
namespace {

using engine::Master;
using engine::Millis;

constexpr Millis kSilence{50};        // a reply that stops arriving for this long has ended
constexpr Millis kLongestReply{500};  // and one that goes on for this long is none

}  // namespace

DemoLine::DemoLine(engine::TargetLink& link) : link_(link) {
  link_.lease().setReceiver(Master::Demo, [this] { rx.take(link_.lease().link().readBytes(0)); });
  link_.lease().onVanished(Master::Demo, [this](const platform::PortError& error) { vanished(error); });
}

void DemoLine::hold() {
  link_.lease().hold(Master::Demo);
}

void DemoLine::release() {
  link_.lease().hold(Master::Engine);
}

void DemoLine::vanished(const platform::PortError& error) {
  link_.lostPort = error.text.empty() ? "the device is gone" : error.text;
  if (link_.onPortStatus) link_.onPortStatus(link_.lostPort);
  link_.say("The COM port has been lost: " + link_.lostPort);
  link_.stopRequested = true;
}

void DemoLine::clearReceiveState() {
  if (link_.isOpen()) link_.clearQueues();
  rx.clear();
}

void DemoLine::sendDemoFrame(std::uint8_t command) {
  link_.write(buildDemoFrame(command));
}

bool DemoLine::arriving() const {
  const engine::PortLease& lease = link_.lease();
  if (!link_.isOpen() || rx.frameOk) return false;
  return lease.gathering() || (rx.midFrame() && link_.world().loop.now() < lease.lastByteAt() + kSilence);
}

bool DemoLine::waitReply(Millis limit) {
  platform::EventLoop& loop = link_.world().loop;
  platform::Timer timer(loop);
  timer.start(limit);
  while (timer.isActive() && !rx.frameOk && !stopped()) loop.runOnce();
  const platform::Instant end = loop.now() + kLongestReply;
  while (arriving() && loop.now() < end && !stopped()) {
    platform::Timer step(loop);
    step.start(kSilence);
    loop.runOnce();
  }
  return rx.frameOk;
}

bool DemoLine::exchange(std::span<const std::uint8_t> frame, Millis limit) {
  clearReceiveState();
  link_.write(frame);
  return waitReply(limit);
}

bool DemoLine::pollUntilReply(std::uint8_t command, Millis pace) {
  while (!stopped() && link_.isOpen()) {
    rx.clear();  // what some noise has begun must not swallow the reply
    sendDemoFrame(command);
    if (waitReply(pace)) return true;
  }
  return false;
}

bool DemoLine::pause(Millis time) {
  platform::EventLoop& loop = link_.world().loop;
  platform::Timer timer(loop);
  timer.start(time);
  while (timer.isActive() && !stopped()) loop.runOnce();
  return !stopped();
}

}  // namespace kvr::userpath
