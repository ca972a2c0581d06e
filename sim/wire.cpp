#include "sim/wire.h"

#include <algorithm>
#include <cmath>
#include <string>

namespace sim {

namespace {

constexpr double kRateTolerance = 0.045;
constexpr Micros kLongAgo = -3600 * kSecond;

Micros whole(double micros) {
  return static_cast<Micros>(std::ceil(micros - 1e-6));
}

}  // namespace

bool canRead(const Line& listener, const Line& speaker) {
  const double ratio = static_cast<double>(listener.baud) / speaker.baud;
  return std::abs(ratio - 1) <= kRateTolerance && listener.parity == speaker.parity &&
         listener.dataBits == speaker.dataBits;
}

Wire::Wire(WireConfig config) : config_(std::move(config)), rng_(config_.seed) {}

void Wire::connect(Device* device) {
  if (device_) device_->say = nullptr;
  device_ = device;
  toDevice_.bursts.clear();
  toHost_.bursts.clear();
  toHost_.freeAt = 0;
  if (!device_) return;
  device_->linesMoved(kLongAgo, lines_);
  device_->say = [this](Micros start, const Line& as, std::span<const std::uint8_t> bytes) {
    return carry(Direction::deviceToHost, bytes, as, start);
  };
}

bool Wire::open(const Line& line, Micros now) {
  advanceTo(now);
  if (!plugged_) return false;
  hostLine_ = line;
  open_ = true;
  return true;
}

void Wire::close(Micros now) {
  if (!open_) return;
  advanceTo(now);
  clearOut(now);
  clearIn(now);
  open_ = false;
}

void Wire::hangUp(Micros now) {
  advanceTo(now);
  clearIn(now);
  open_ = false;
}

void Wire::setLines(const ModemLines& lines, Micros now) {
  if (lines == lines_) return;
  advanceTo(now);
  lines_ = lines;
  lineMoves_.push_back({now, lines});
  if (device_) device_->linesMoved(now, lines);
}

void Wire::write(std::span<const std::uint8_t> bytes, Micros now) {
  if (!open_ || bytes.empty()) return;
  advanceTo(now);
  carry(Direction::hostToDevice, bytes, hostLine_, now);
}

int Wire::pendingOut(Micros now) const {
  const double left = toDevice_.freeAt - static_cast<double>(now);
  return left <= 0 ? 0 : static_cast<int>(std::ceil(left / byteTime(hostLine_) - 1e-6));
}

Micros Wire::drainedAt() const {
  return whole(toDevice_.freeAt);
}

void Wire::clearOut(Micros now) {
  advanceTo(now);
  const double oneByte = byteTime(hostLine_);
  double last = static_cast<double>(now);
  for (Burst& burst : toDevice_.bursts) {
    const auto notBegun = [&](const Item& item) {
      return static_cast<double>(item.end) - oneByte > static_cast<double>(now);
    };
    std::erase_if(burst.items, notBegun);
    if (!burst.items.empty()) last = std::max(last, static_cast<double>(burst.items.back().end));
  }
  std::erase_if(toDevice_.bursts, [](const Burst& burst) { return burst.next >= burst.items.size(); });
  toDevice_.freeAt = std::min(toDevice_.freeAt, last);
}

int Wire::available(Micros now) {
  advanceTo(now);
  return static_cast<int>(inbox_.size());
}

std::vector<std::uint8_t> Wire::take(Micros now, std::size_t limit) {
  advanceTo(now);
  return takeArrived(limit);
}

std::vector<std::uint8_t> Wire::peek(Micros now) {
  advanceTo(now);
  return {inbox_.begin(), inbox_.end()};
}

std::vector<std::uint8_t> Wire::takeArrived(std::size_t limit) {
  const std::size_t count = limit == 0 ? inbox_.size() : std::min(limit, inbox_.size());
  const auto stop = inbox_.begin() + static_cast<std::ptrdiff_t>(count);
  std::vector<std::uint8_t> taken(inbox_.begin(), stop);
  inbox_.erase(inbox_.begin(), stop);
  return taken;
}

void Wire::clearIn(Micros now) {
  advanceTo(now);
  inbox_.clear();
  held_.clear();
}

void Wire::unplug(Micros now) {
  close(now);
  plugged_ = false;
}

void Wire::plug() {
  plugged_ = true;
}

std::optional<Micros> Wire::nextDue() const {
  std::optional<Micros> due;
  const auto earliest = [&](Micros at) { due = due ? std::min(*due, at) : at; };
  if (!toDevice_.bursts.empty()) earliest(toDevice_.bursts.front().items.back().end);
  if (!toHost_.bursts.empty()) {
    const Burst& burst = toHost_.bursts.front();
    const std::size_t ahead = burst.next == 0 ? 0 : static_cast<std::size_t>(config_.wakeEvery) - 1;
    const std::size_t next = burst.next + ahead;
    earliest(burst.items[std::min(next, burst.items.size() - 1)].end);
  }
  if (!held_.empty()) earliest(heldSince_ + config_.adapterLatency);
  if (device_)
    if (const auto at = device_->nextDue()) earliest(*at);
  return due;
}

std::optional<Micros> Wire::nextStep() const {
  std::optional<Micros> due = nextDue();
  if (!toDevice_.bursts.empty()) {
    const Burst& burst = toDevice_.bursts.front();
    due = std::min(*due, burst.items[burst.next].end);
  }
  return due;
}

void Wire::advanceTo(Micros now) {
  for (auto at = nextStep(); at && *at <= now; at = nextStep()) step(*at);
}

void Wire::step(Micros at) {
  if (device_) device_->advanceTo(at);
  reachDevice(at);
  reachHost(at);
  if (!held_.empty() && heldSince_ + config_.adapterLatency <= at) flushAdapter();
}

void Wire::reachDevice(Micros at) {
  while (!toDevice_.bursts.empty()) {
    Burst& burst = toDevice_.bursts.front();
    if (burst.items[burst.next].end > at) return;
    const Item item = burst.items[burst.next];
    const Line line = burst.line;
    if (++burst.next == burst.items.size()) toDevice_.bursts.pop_front();
    if (!device_ || !plugged_) continue;
    Heard heard{item.byte, item.meant, item.damage, line};
    const auto listener = device_->line();
    if (listener && !canRead(*listener, line)) {
      heard.byte = static_cast<std::uint8_t>(rng_());
      heard.damage = Damage::wrongLine;
    }
    device_->hear(item.end, heard);
  }
}

void Wire::reachHost(Micros at) {
  while (!toHost_.bursts.empty()) {
    Burst& burst = toHost_.bursts.front();
    if (burst.items[burst.next].end > at) return;
    const Item item = burst.items[burst.next];
    const bool readable = canRead(hostLine_, burst.line);
    if (++burst.next == burst.items.size()) toHost_.bursts.pop_front();
    if (!open_) continue;
    if (held_.empty()) heldSince_ = item.end;
    held_.push_back(readable ? item.byte : static_cast<std::uint8_t>(rng_()));
    if (config_.adapterLatency == 0 || static_cast<int>(held_.size()) >= config_.adapterChunk) flushAdapter();
  }
}

void Wire::flushAdapter() {
  inbox_.insert(inbox_.end(), held_.begin(), held_.end());
  held_.clear();
}

}  // namespace sim
