#include "engine/target_link.h"

#include <algorithm>

#include "platform/text.h"

namespace kvr::engine {
namespace {

constexpr Millis kSilence{50};  // a frame that stops arriving for this long has ended
constexpr Millis kLongestDrain{1000};
constexpr Millis kLongestTurnRound{50};  // on a line that does not fall silent
constexpr int kLongestFrame = 257;       // with its start pair
constexpr int kBitsPerByte = 12;         // at most, on the wire

}  // namespace

bool pause(const RunServices& services, Millis time) {
  platform::Timer timer(services.loop);
  timer.start(time);
  while (timer.isActive() && !services.stop.requested()) services.loop.runOnce();
  return !services.stop.requested();
}

std::string goneText(const platform::PortError& error) {
  return error.text.empty() ? "the device is gone" : error.text;
}

TargetLink::TargetLink(const RunServices& services, RunView& view, int port, SumForm form)
    : services_(services), view_(view), port_(port), form_(form), replyTimer_(services.loop) {
  rx_.frame2 = form == SumForm::TwoBytes;
  rx_.boardCrcMode = form == SumForm::BoardCrc;
  rx_.armed = true;
  lease().hold(*this);
}

TargetLink::~TargetLink() {
  lease().release(*this);
}

void TargetLink::bytesWait() {
  if (!rx_.midFrame()) frameBegan_ = lease().gatherBegan();
  rx_.take(lease().link().readBytes(0));
  if (rx_.frameOk) lastReply_ = rx_.reply();
  if (rx_.frameOk && !firstAnswerAt_) firstAnswerAt_ = frameBegan_;
  badFrame_ = badFrame_ || rx_.frameBad;
  rx_.frameBad = false;
}

bool TargetLink::answerIsWhole() {
  return awaiting_ && rx_.completedBy(lease().link().peekBytes());
}

void TargetLink::portVanished(const platform::PortError& error) {
  lostPort_ = goneText(error);
  view_.portStatus(lostPort_);
  view_.say("The COM port has been lost: " + lostPort_);
  services_.stop.request();
}

// --- The port. ---

int TargetLink::currentBaud() const {
  return platform::wholeOf(settings().substr(0, 6));
}

platform::PortError TargetLink::setBaud(const std::string& baud) {
  const char* suffix = !parityOn_ ? ",n,8,1" : parityEven_ ? ",e,8,1" : ",o,8,1";
  return lease().link().setSettings(baud + suffix);
}

platform::PortError TargetLink::setBaud(int baud) {
  return setBaud(std::to_string(baud));
}

platform::PortError TargetLink::open() {
  lease().close();
  lease().link().setPortNumber(port_);
  auto error = lease().link().open();
  view_.portStatus(error.text);
  return error;
}

platform::PortError TargetLink::open(const std::string& settings) {
  lease().close();
  lease().link().setPortNumber(port_);
  auto error = lease().link().setSettings(settings);
  if (!error) error = lease().link().open();
  view_.portStatus(error.text);
  return error;
}

// A rate that the adapter cannot make is no reason to give the port up.
bool TargetLink::opened(const platform::PortError& error) {
  view_.portStatus(error.text);
  if (error && error.kind != platform::PortError::Kind::BadSettings) portVanished(error);
  return !error;
}

bool TargetLink::reopen() {
  if (stopped()) return false;
  lease().close();
  return opened(lease().link().open());
}

bool TargetLink::reopenIfClosed() {
  if (isOpen() || stopped()) return isOpen();
  return opened(lease().link().open());
}

bool TargetLink::changeBaud(int baud) {
  lease().close();
  return !stopped() && opened(setBaud(baud)) && reopenIfClosed();
}

bool TargetLink::changeSettings(const std::string& settings) {
  lease().close();
  return !stopped() && opened(lease().link().setSettings(settings)) && reopenIfClosed();
}

void TargetLink::close() {
  lease().close();
}

void TargetLink::clearQueues() {
  lease().clearIn();
  lease().link().clearOut();
}

void TargetLink::clearReceiveState() {
  if (isOpen()) clearQueues();
  rx_.clear();
}

// --- Sending. ---

void TargetLink::write(std::span<const std::uint8_t> bytes) {
  lease().link().write(bytes);
}

void TargetLink::writeSync(std::span<const std::uint8_t> bytes) {
  if (rx_.midFrame() && !lease().gathering() && loop().now() - lease().lastByteAt() > kSilence) rx_.clear();
  if (lease().link().outBytesPending() <= bytes.size()) write(bytes);
}

// Bytes that still come push the frame away, so that none of them is taken for its answer.
void TargetLink::leave(Millis turnRound) {
  const platform::Instant began = loop().now();
  const platform::Instant longest = began + kLongestTurnRound;
  const auto left = [&] {
    return std::min<platform::Instant>(lease().lastByteAt() + turnRound, longest) - loop().now();
  };
  while (isOpen() && left() > platform::Instant(0)) {
    platform::Timer timer(loop());
    timer.start(std::chrono::ceil<Millis>(left()));
    loop().runOnce();
  }
  pauses_.turned += loop().now() - began;
}

void TargetLink::beginFrame(Millis turnRound) {
  leave(turnRound);
  clearReceiveState();
}

void TargetLink::writeFrame(std::span<const std::uint8_t> frame) {
  leave(kFullTurnRound);
  write(frame);
}

void TargetLink::send(std::span<const std::uint8_t> frame, Millis limit, Millis turnRound) {
  beginFrame(turnRound);
  badFrame_ = false;
  replyTimer_.start(limit);
  write(frame);
}

std::optional<Reply> TargetLink::awaitReply() {
  const Awaiting awaiting(*this);
  while (!rx_.frameOk && !badFrame_ && !stopped() && replyTimer_.isActive()) loop().runOnce();
  if (!replyTimer_.isActive() && !badFrame_) awaitRestOfFrame();
  replyTimer_.stop();
  return take();
}

std::optional<Reply> TargetLink::exchange(std::span<const std::uint8_t> frame, Millis limit) {
  send(frame, limit);
  return awaitReply();
}

void TargetLink::sendWithRoom(std::span<const std::uint8_t> frame, Millis lead) {
  clearReceiveState();
  delay(lead, why::kNoAnswer);
  writeFrame(frame);
  drain();
  delay(Millis(3));
}

void TargetLink::sendFixedLinkFrame(std::uint8_t command) {
  if (!isOpen() && open()) return;
  beginFrame();
  write(buildFixedLinkFrame(command, form_));
}

void TargetLink::endSession() {
  sendFixedLinkFrame(0x82);
  if (isOpen()) delay(Millis(100), why::kGoodbye);
}

// --- Waiting. ---

// What is prescribed decides whether it is told: a timer may ring a little late.
void TargetLink::noteRest(platform::Instant began, Millis prescribed, std::string_view why) {
  const platform::Micros length = loop().now() - began;
  pauses_.rested += length;
  if (prescribed > Rest::kTold) pauses_.longOnes.push_back({.length = length, .why = why});
}

void TargetLink::delay(Millis time, std::string_view why) {
  const platform::Instant began = loop().now();
  letPass(time);
  noteRest(began, time, why);
}

void TargetLink::letPass(Millis time) {
  if (time.count() <= 0) return;
  platform::Timer timer(loop());
  timer.start(time);
  while (timer.isActive() && lostPort_.empty()) loop().runOnce();
}

bool TargetLink::pause(Millis time, std::string_view why) {
  const platform::Instant began = loop().now();
  const bool goesOn = engine::pause(services_, time);
  noteRest(began, time, why);
  return goesOn;
}

std::optional<Reply> TargetLink::take() {
  return rx_.frameOk ? lastReply_ : std::nullopt;
}

std::optional<Reply> TargetLink::awaitFrameCut(Millis limit) {
  platform::Timer timer(loop());
  timer.start(limit);
  while (timer.isActive() && !rx_.frameOk && !stopped()) loop().runOnce();
  return take();
}

std::optional<Reply> TargetLink::awaitFrame(Millis limit) {
  const Awaiting awaiting(*this);
  if (!awaitFrameCut(limit)) awaitRestOfFrame();
  return take();
}

std::optional<Reply> TargetLink::awaitFrame(Millis limit, const std::function<bool(const Reply&)>& wanted) {
  const platform::Instant end = loop().now() + limit;
  while (const auto reply = awaitFrame(std::chrono::ceil<Millis>(end - loop().now()))) {
    if (wanted(*reply)) return reply;
    rx_.clear();
  }
  return std::nullopt;
}

std::optional<Reply> TargetLink::awaitAnswer(Millis limit) {
  const platform::Instant end = loop().now() + limit;
  while (!stopped() && isOpen() && lease().link().outBytesPending() > 0 && loop().now() < end) {
    if (frameArriving()) {
      lease().clearIn();
      rx_.clear();
    }
    platform::Timer timer(loop());
    timer.start(drainTime());
    loop().runOnce();
  }
  return awaitFrame(std::chrono::ceil<Millis>(end - loop().now()));
}

bool TargetLink::frameArriving() const {
  return isOpen() && (rx_.midFrame() || lease().gathering());
}

void TargetLink::awaitRestOfFrame() {
  const auto wireTime = Millis(kLongestFrame * kBitsPerByte * 1000 / std::max(currentBaud(), 1) + 1);
  const platform::Instant end = loop().now() + wireTime;
  badFrame_ = false;
  while (frameArriving() && !rx_.frameOk && !badFrame_ && !stopped()) {
    const platform::Instant due = std::min<platform::Instant>(end, lease().lastByteAt() + kSilence);
    if (due <= loop().now()) return;
    platform::Timer timer(loop());
    timer.start(std::chrono::ceil<Millis>(due - loop().now()));
    loop().runOnce();
  }
}

// A millisecond is as fine as timers are.
Millis TargetLink::drainTime() const {
  const auto bits = static_cast<std::int64_t>(lease().link().outBytesPending()) * kBitsPerByte;
  return Millis(std::max<std::int64_t>(1, (bits * 1000 + currentBaud()) / std::max(currentBaud(), 1)));
}

void TargetLink::drain() {
  const platform::Instant end = loop().now() + kLongestDrain;
  while (!stopped() && isOpen() && lease().link().outBytesPending() > 0 && loop().now() < end) letPass(drainTime());
}

}  // namespace kvr::engine
