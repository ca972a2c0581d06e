#include "sim/replay_device.h"

#include <algorithm>
#include <cstdio>

namespace sim {

namespace {

constexpr int kBeats = 10;  // of a host that waits for power, before it is answered

}  // namespace

void ReplayDevice::powerOn(Micros at) {
  onAt_ = at;
}

void ReplayDevice::powerOff(Micros) {
  on_ = false;
  onAt_.reset();
  toSay_.clear();
}

const TraceHeard* ReplayDevice::expected(std::size_t ahead) const {
  if (step_ >= script_.steps.size()) return nullptr;
  const auto& heard = script_.steps[step_].heard;
  return item_ + ahead < heard.size() ? &heard[item_ + ahead] : nullptr;
}

bool ReplayDevice::isRepetition(std::uint8_t byte) const {
  return byte_ == 0 && before_ && before_->times > 1 && std::ranges::find(before_->bytes, byte) != before_->bytes.end();
}

void ReplayDevice::hear(Micros end, const Heard& heard) {
  advanceTo(end);
  if (!on_ || !difference_.empty()) return;
  ++heard_;
  hostLine_ = heard.line;
  const TraceHeard* wanted = expected();
  if (wanted && byte_ == 0 && times_ > 0 && heard.byte != wanted->bytes[0]) {  // it repeated itself less often
    const TraceHeard* next = expected(1);
    if (next && heard.byte == next->bytes[0]) {
      before_ = wanted;
      ++item_;
      times_ = 0;
      wanted = next;
    }
  }
  if (wanted && heard.byte == wanted->bytes[byte_]) {
    if (byte_ == 0) beganAt_ = end;
    if (++byte_ == wanted->bytes.size()) complete(end);
    return;
  }
  if (isRepetition(heard.byte)) return;
  char text[120];
  std::snprintf(text, sizeof text, "byte %ld from the host, in exchange %zu, is %02X instead of %02X", heard_,
                step_ + 1, heard.byte, wanted ? wanted->bytes[byte_] : 0);
  difference_ = text;
}

void ReplayDevice::complete(Micros at) {
  const TraceHeard* const item = expected();
  byte_ = 0;
  before_ = item;
  if (++times_ < (step_ == 0 ? std::min(item->times, kBeats) : item->times)) return;
  times_ = 0;
  if (++item_ == script_.steps[step_].heard.size()) nextStep(at);
}

void ReplayDevice::nextStep(Micros at) {
  for (const TraceSaid& said : script_.steps[step_].said)
    toSay_.emplace_back(std::max(at, beganAt_ + said.after), said);
  item_ = 0;
  if (++step_ < script_.steps.size()) return;
  step_ = 0;
  ++plays_;
}

std::optional<Micros> ReplayDevice::nextDue() const {
  if (!on_) return onAt_;
  return toSay_.empty() ? std::nullopt : std::optional(toSay_.front().first);
}

// What was one answer goes out in one piece; the wire gives it its time. A terminal has no parity at either end.
void ReplayDevice::advanceTo(Micros now) {
  if (!on_ && onAt_ && *onAt_ <= now) {
    on_ = true;
    onAt_.reset();
    step_ = item_ = byte_ = 0;
    times_ = 0;
    before_ = nullptr;
    difference_.clear();
  }
  while (on_ && !toSay_.empty() && toSay_.front().first <= now) {
    auto [at, said] = std::move(toSay_.front());
    toSay_.pop_front();
    if (hostLine_.parity == 'n') said.line.parity = 'n';
    if (say) say(at, said.line, said.bytes);
  }
}

}  // namespace sim
