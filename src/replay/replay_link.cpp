#include "replay/replay_link.h"

#include <algorithm>
#include <cmath>

#include "engine/trace_text.h"
#include "platform/text.h"

namespace kvr::replay {
namespace {

using platform::Instant;

std::string shownBytes(std::span<const std::uint8_t> bytes) {
  constexpr std::size_t kShown = 24;
  const std::string line = engine::hexLine(bytes.first(std::min(bytes.size(), kShown)));
  return bytes.size() > kShown ? line + " ... (" + std::to_string(bytes.size()) + " bytes)" : line;
}

// So many times more may a machine that runs at another pace repeat itself.
int slackOf(int times) {
  return times < 2 ? 0 : times / 10 + 2;
}

}  // namespace

Instant ReplayLink::Due::at() const {
  const auto gaps = static_cast<std::int64_t>(deed.bytes.size()) - 1;
  if (gaps <= 0) return from;
  return from + Micros((deed.span.count() * static_cast<std::int64_t>(next) + gaps / 2) / gaps);
}

ReplayLink::ReplayLink(platform::VirtualLoop& loop, const Script& script)
    : loop_(loop),
      script_(script),
      event_(loop,
             [this] {
               if (receive_) receive_();
             }),
      gone_(loop,
            [this] {
              if (vanished_) vanished_(lost_);
            }),
      stop_(loop, [this] { onStop(stopCloses_); }) {
  loop_.addSource(*this);
  release();
}

// --- The script. ---

bool ReplayLink::matches(std::span<const std::uint8_t> bytes) {
  const Step& step = script_.steps[step_];
  const Step* const next = step_ + 1 < script_.steps.size() ? &script_.steps[step_ + 1] : nullptr;
  const bool again = std::ranges::equal(bytes, step.bytes);
  if (again && times_ < step.times) {
    if (++times_ == step.times) release();
    return true;
  }
  if (next && std::ranges::equal(bytes, next->bytes) && step.times - times_ <= slackOf(step.times)) {
    if (times_ < step.times) release();
    ++step_;
    times_ = 1;
    if (next->times == 1) release();
    return true;
  }
  return again && times_++ < step.times + slackOf(step.times);
}

void ReplayLink::differ(std::span<const std::uint8_t> bytes) {
  const std::string wanted = missing();
  difference_ = "at " + platform::fixedText(static_cast<double>(loop_.now().count()) / 1e6, 6) + " s the host sent " +
                shownBytes(bytes) + "; " + (wanted.empty() ? "the trace has nothing more" : wanted);
  due_.clear();
  stop_.raise();
}

std::string ReplayLink::missing() const {
  const Step& step = script_.steps[step_];
  const bool more = step.times - times_ > slackOf(step.times);
  if (!more && step_ + 1 == script_.steps.size()) return {};
  const Step& wanted = more ? step : script_.steps[step_ + 1];
  return "the trace has, in stage " + wanted.stage + ", " + shownBytes(wanted.bytes);
}

void ReplayLink::release() {
  for (const Deed& deed : script_.steps[step_].deeds) due_.push_back({deed, loop_.now() + deed.after});
}

void ReplayLink::perform(const Deed& deed) {
  if (deed.kind == Deed::Kind::Stop) {
    stopCloses_ = deed.closes;
    stop_.raise();
    return;
  }
  lost_ = deed.error;
  open_ = false;
  inbox_.clear();
  event_.withdraw();
  gone_.raise();
}

std::optional<Instant> ReplayLink::nextDue() const {
  if (due_.empty() || (!open_ && due_.front().deed.kind == Deed::Kind::Bytes)) return std::nullopt;
  return std::max(due_.front().at(), loop_.now());
}

// Bytes reached an open port then, so they wait for one now.
void ReplayLink::advanceTo(Instant now) {
  while (!due_.empty() && due_.front().at() <= now) {
    Due& due = due_.front();
    if (due.deed.kind != Deed::Kind::Bytes) {
      const Deed deed = due.deed;
      due_.pop_front();
      perform(deed);
      continue;
    }
    if (!open_) return;
    inbox_.push_back(due.deed.bytes[due.next]);
    event_.raise();
    if (++due.next == due.deed.bytes.size()) due_.pop_front();
  }
}

// --- The port. ---

platform::PortError ReplayLink::setSettings(const std::string& text) {
  if (const auto refused = script_.refusedSettings.find(text); refused != script_.refusedSettings.end())
    return refused->second;
  if (open_) drain();
  settings_ = text;
  return {};
}

platform::PortError ReplayLink::open() {
  if (opened_ < script_.openings.size()) {
    device_ = script_.devices[opened_];
    if (const auto& error = script_.openings[opened_++]) return error;
  }
  open_ = true;
  return {};
}

void ReplayLink::close() {
  if (!open_) return;
  drain();
  open_ = false;
  clearIn();
}

double ReplayLink::byteMicros() const {
  if (script_.untimed) return 0;
  const bool parity = settings_.find(",n,") == std::string::npos;
  const int dataBits = settings_.find(",7,") == std::string::npos ? 8 : 7;
  const double stopBits = platform::valueOf(settings_.substr(settings_.rfind(',') + 1));
  return (1 + dataBits + (parity ? 1 : 0) + stopBits) * 1e6 / std::max(platform::wholeOf(settings_), 1);
}

void ReplayLink::write(std::span<const std::uint8_t> bytes) {
  if (!open_ || bytes.empty()) return;
  freeAt_ =
      std::max(freeAt_, static_cast<double>(loop_.now().count())) + static_cast<double>(bytes.size()) * byteMicros();
  if (difference_.empty() && !matches(bytes)) differ(bytes);
}

std::size_t ReplayLink::outBytesPending() const {
  const double left = freeAt_ - static_cast<double>(loop_.now().count());
  return !open_ || left <= 0 || script_.untimed ? 0 : static_cast<std::size_t>(std::ceil(left / byteMicros() - 1e-6));
}

void ReplayLink::drain() {
  const auto until = Instant(static_cast<std::int64_t>(std::ceil(freeAt_ - 1e-6)));
  loop_.blockUntil(std::min(until, loop_.now() + std::chrono::seconds(1)));
  clearOut();
}

// The byte that has begun to leave goes out.
void ReplayLink::clearOut() {
  const double now = static_cast<double>(loop_.now().count());
  if (freeAt_ <= now || script_.untimed) return;
  freeAt_ = std::min(freeAt_, now + std::fmod(freeAt_ - now, byteMicros()));
}

std::vector<std::uint8_t> ReplayLink::readBytes(std::size_t maxCount) {
  const std::size_t count = maxCount == 0 ? inbox_.size() : std::min(maxCount, inbox_.size());
  const auto end = inbox_.begin() + static_cast<std::ptrdiff_t>(count);
  std::vector<std::uint8_t> bytes(inbox_.begin(), end);
  inbox_.erase(inbox_.begin(), end);
  if (inbox_.empty()) event_.withdraw();
  return bytes;
}

void ReplayLink::clearIn() {
  inbox_.clear();
  event_.withdraw();
}

}  // namespace kvr::replay
