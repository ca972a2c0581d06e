#include "tests/support/virtual_link.h"

#include <algorithm>
#include <sstream>
#include <utility>

#include "platform/text.h"

namespace kvr::support {

using platform::PortError;

VirtualLink::VirtualLink(platform::VirtualLoop& loop, sim::Wire& wire)
    : loop_(loop),
      wire_(wire),
      event_(loop,
             [this] {
               if (receive_) receive_();
             }),
      gone_(loop, [this] {
        if (vanished_) vanished_({PortError::Kind::Vanished, device_ + ": the device was unplugged"});
      }) {
  loop_.addSource(*this);
}

std::optional<sim::Line> VirtualLink::lineOf(const std::string& text) {
  std::stringstream stream(text);
  std::string baud, parity, data, stop;
  for (std::string* part : {&baud, &parity, &data, &stop})
    if (!std::getline(stream, *part, ',')) return std::nullopt;
  const char letter = parity.empty() ? '?' : static_cast<char>(parity[0] | 0x20);  // either case
  const sim::Line line{platform::wholeOf(baud), letter, platform::wholeOf(data), platform::valueOf(stop)};
  const bool good = line.baud >= 50 && std::string("neo").find(line.parity) != std::string::npos &&
                    line.dataBits >= 5 && line.dataBits <= 8 && line.stopBits >= 1 && line.stopBits <= 2;
  return good ? std::optional(line) : std::nullopt;
}

PortError VirtualLink::setSettings(const std::string& text) {
  const auto line = lineOf(text);
  if (!line) return {PortError::Kind::BadSettings, text + ": no such settings"};
  settings_ = text;
  if (!isOpen()) return {};
  drain();
  wire_.open(*line, now());
  return {};
}

void VirtualLink::setPortNumber(int number) {
  held_.numberSet(number != number_);
  number_ = number;
}

void VirtualLink::holdDevice() {
  held_.hold();
  if (isOpen()) held_.opened(device_);
}

PortError VirtualLink::open() {
  const sim::ModemLines lines = std::exchange(next_, {true, true});
  if (isOpen()) return {PortError::Kind::Busy, device_ + ": busy"};
  if (refusesToOpen && opens >= refusesAfter) return refusesToOpen;
  if (held_.device().empty() && !devices.contains(number_))
    return {PortError::Kind::NoSuchDevice, "COM" + std::to_string(number_) + ": no such device"};
  device_ = held_.device().empty() ? devices[number_] : held_.device();
  const sim::Line line = *lineOf(settings_);
  if (line.stopBits == 1.5 && line.dataBits != 5)
    return {PortError::Kind::BadSettings, device_ + ": 1.5 stop bits go with 5 data bits only"};
  if (!wire_.open(line, now())) return {PortError::Kind::NoSuchDevice, device_ + ": no such device"};
  moveLines(lines);
  held_.opened(device_);
  ++opens;
  told_ = 0;
  return {};
}

// A kept line stays as it is kept.
void VirtualLink::moveLines(sim::ModemLines lines) {
  if (!hasModemLines) return;
  if (kept_) (kept_->line == platform::ModemLine::Dtr ? lines.dtr : lines.rts) = kept_->on;
  wire_.setLines(lines, now());
}

void VirtualLink::setDtr(bool on) {
  if (isOpen())
    moveLines({on, wire_.lines().rts});
  else
    next_.dtr = on;
}

void VirtualLink::setRts(bool on) {
  if (isOpen())
    moveLines({wire_.lines().dtr, on});
  else
    next_.rts = on;
}

// A port that was never open moves nothing; one that was is still in hand.
void VirtualLink::keepLine(platform::ModemLine line, bool on) {
  kept_ = {line, on};
  if (opens > 0) moveLines(wire_.lines());
}

// What was written goes out first, for at most one second; the rest is thrown away.
void VirtualLink::drain() {
  const sim::Micros until = std::min(wire_.drainedAt(), now() + sim::kSecond);
  loop_.blockUntil(platform::Instant(until));
  wire_.clearOut(now());
}

void VirtualLink::close() {
  if (!isOpen()) return;
  drain();
  ++closes;
  wire_.close(now());
  event_.withdraw();
}

void VirtualLink::unplug() {
  const bool wasOpen = isOpen();
  wire_.unplug(now());
  event_.withdraw();
  if (wasOpen) gone_.raise();
}

std::vector<std::uint8_t> VirtualLink::readBytes(std::size_t maxCount) {
  auto bytes = wire_.take(now(), maxCount);
  told_ = wire_.available(now());
  if (told_ == 0) event_.withdraw();
  return bytes;
}

void VirtualLink::clearIn() {
  wire_.clearIn(now());
  told_ = 0;
  event_.withdraw();
}

std::optional<platform::Instant> VirtualLink::nextDue() const {
  const auto due = wire_.nextDue();
  return due ? std::optional(platform::Instant(std::max(*due, now()))) : std::nullopt;
}

void VirtualLink::advanceTo(platform::Instant to) {
  wire_.advanceTo(to.count());
  if (!isOpen()) return;
  const int waiting = wire_.available(to.count());
  if (waiting > told_) event_.raise();
  told_ = waiting;
}

}  // namespace kvr::support
