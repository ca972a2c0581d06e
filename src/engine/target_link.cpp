#include "engine/target_link.h"

#include <algorithm>

#include "platform/text.h"

namespace kvr::engine {
namespace {

constexpr Millis kSilence{50};  // a frame that stops arriving for this long has ended
constexpr Millis kLongestDrain{1000};

}  // namespace

TargetLink::TargetLink(platform::World world, PortLease& lease, const catalogue::SelectedModel& model,
                       DownloadPanel& panel, SharedControls shared)
    : world_(world),
      lease_(lease),
      model_(model),
      panel_(panel),
      shared_(shared),
      beeper_(world.loop, world.dialogs),
      replyTimer_(world.loop, [this] { replyExpired = true; }) {
  lease_.setReceiver(Master::Engine, [this] {
    rx.frame2 = model_.record.frame2;
    rx.take(lease_.link().readBytes(0));
  });
  lease_.onVanished(Master::Engine, [this](const platform::PortError& error) { vanished(error); });
}

int TargetLink::connectBaud() const {
  return platform::wholeOf(connectBaudText);
}

int TargetLink::currentBaud() const {
  return platform::wholeOf(lease_.link().settings().substr(0, 6));
}

std::string TargetLink::maxBaudText() const {
  const std::string text = panel_.cobBaudMax.trimmed();
  if (model_.traits().oscillator == catalogue::Oscillator::External) return text;
  const int cap = baseFrequencyMHz && baseFrequencyMHz() == 24 ? 57600 : 38400;
  return platform::valueOf(text) > cap ? std::to_string(cap) : text;
}

platform::PortError TargetLink::setMSCommSettings(const std::string& baudText) {
  const char* suffix = !linkParityOn ? ",n,8,1" : linkParityEven ? ",e,8,1" : ",o,8,1";
  return lease_.link().setSettings(baudText + suffix);
}

platform::PortError TargetLink::report(platform::PortError error) {
  if (onPortStatus) onPortStatus(error ? error.text : std::string());
  return error;
}

platform::PortError TargetLink::openTargetPort() {
  lease_.close();
  lease_.link().setPortNumber(shared_.combCommPort.listIndex() + 1);
  return report(lease_.link().open());
}

platform::PortError TargetLink::reopenTargetPort() {
  if (stopRequested) return {};
  return openTargetPort();
}

platform::PortError TargetLink::reopenIfClosed() {
  if (isOpen() || stopRequested) return {};
  return report(lease_.link().open());
}

platform::PortError TargetLink::changeSettings(const std::string& settings) {
  lease_.close();
  if (stopRequested) return {};
  if (auto error = lease_.link().setSettings(settings)) return report(error);
  return report(lease_.link().open());
}

void TargetLink::closeTargetPort() {
  for (int i = 0; i < 3 && isOpen(); ++i) lease_.close();
}

void TargetLink::initPortModes() {
  clearQueues();
}

void TargetLink::clearQueues() {
  lease_.clearIn();
  lease_.link().clearOut();
}

void TargetLink::clearReceiveState() {
  if (isOpen()) clearQueues();
  rx.clear();
}

void TargetLink::write(std::span<const std::uint8_t> bytes) {
  lease_.link().write(bytes);
}

void TargetLink::writeSync(std::span<const std::uint8_t> bytes) {
  if (rx.midFrame() && !lease_.gathering() && world_.loop.now() - lease_.lastByteAt() > kSilence) rx.clear();
  if (lease_.link().outBytesPending() <= bytes.size()) write(bytes);
}

void TargetLink::sendFrame(std::span<const std::uint8_t> frame, Millis timeout) {
  clearReceiveState();
  replyExpired = false;
  rx.frameBad = false;
  rx.frame2 = model_.record.frame2;
  replyTimer_.start(timeout);
  write(frame);
}

void TargetLink::sendCommandFrame(std::uint8_t command, Millis timeout, std::uint8_t argument) {
  const SumForm form = rx.boardCrcMode ? SumForm::BoardCrc : sumFormOf(model_.record);
  sendFrame(buildGenericFrame(model_.record, command, argument, reportedCode, form), timeout);
}

bool TargetLink::waitReply() {
  while (!rx.frameOk && !rx.frameBad && !stopRequested && !replyExpired) world_.loop.runOnce();
  if (replyExpired && !rx.frameBad) awaitRestOfFrame();
  replyTimer_.stop();
  return rx.frameOk;
}

bool TargetLink::sendFixedLinkFrame(std::uint8_t command) {
  const Bytes frame = buildFixedLinkFrame(command, sumFormOf(model_.record));
  if (frame.empty()) return false;
  if (!isOpen() && openTargetPort()) return false;
  initPortModes();
  clearReceiveState();
  write(frame);
  return true;
}

void TargetLink::endFixedLink() {
  if (sendFixedLinkFrame(0x82)) delayMs(Millis(100));
}

// Nothing is worth waiting for once the port has gone.
void TargetLink::delayMs(Millis time) {
  if (time.count() <= 0) return;
  platform::Timer timer(world_.loop);
  timer.start(time);
  while (timer.isActive() && lostPort.empty()) world_.loop.runOnce();
}

bool TargetLink::waitFrameCut(Millis limit) {
  platform::Timer timer(world_.loop);
  timer.start(limit);
  while (timer.isActive() && !rx.frameOk && !stopRequested) world_.loop.runOnce();
  return rx.frameOk;
}

bool TargetLink::waitFrame(Millis limit) {
  if (!waitFrameCut(limit)) awaitRestOfFrame();
  return rx.frameOk;
}

bool TargetLink::waitAnswer(Millis limit) {
  const platform::Instant end = world_.loop.now() + limit;
  while (!stopRequested && isOpen() && lease_.link().outBytesPending() > 0 && world_.loop.now() < end) {
    if (frameArriving()) {
      lease_.clearIn();
      rx.clear();
    }
    platform::Timer timer(world_.loop);
    timer.start(drainTime());
    world_.loop.runOnce();
  }
  return waitFrame(std::chrono::ceil<Millis>(end - world_.loop.now()));
}

bool TargetLink::frameArriving() const {
  return isOpen() && (rx.midFrame() || lease_.gathering());
}

void TargetLink::awaitRestOfFrame() {
  const auto wireTime = std::chrono::milliseconds(257 * 12 * 1000 / std::max(currentBaud(), 1) + 1);
  const platform::Instant end = world_.loop.now() + wireTime;
  const bool badBefore = rx.frameBad;  // may stand since an exchange long ago
  while (frameArriving() && !rx.frameOk && rx.frameBad == badBefore && !stopRequested) {
    const platform::Instant due = std::min<platform::Instant>(end, lease_.lastByteAt() + kSilence);
    if (due <= world_.loop.now()) return;
    platform::Timer timer(world_.loop);
    timer.start(std::chrono::ceil<Millis>(due - world_.loop.now()));
    world_.loop.runOnce();
  }
}

// A byte takes at most 12 bits on the wire; a millisecond is as fine as timers are.
Millis TargetLink::drainTime() const {
  const auto bits = static_cast<std::int64_t>(lease_.link().outBytesPending()) * 12;
  return Millis(std::max<std::int64_t>(1, (bits * 1000 + currentBaud()) / std::max(currentBaud(), 1)));
}

void TargetLink::waitDrained() {
  const platform::Instant end = world_.loop.now() + kLongestDrain;
  while (!stopRequested && isOpen() && lease_.link().outBytesPending() > 0 && world_.loop.now() < end)
    delayMs(drainTime());
}

bool TargetLink::stopCheck() {
  if (!stopRequested) return false;
  beeps(1);
  say("Operation stopped. ");
  return true;
}

void TargetLink::vanished(const platform::PortError& error) {
  lostPort = error.text.empty() ? "the device is gone" : error.text;
  if (onPortStatus) onPortStatus(lostPort);
  say("The COM port has been lost: " + lostPort);
  stopRequested = true;
}

}  // namespace kvr::engine
