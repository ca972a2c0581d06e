// A port of the virtual world on a simulated wire.
#pragma once

#include <array>
#include <cstdio>
#include <string>

#include "platform/serial_link.h"
#include "platform/virtual/virtual_loop.h"
#include "sim/wire.h"

namespace kvr::support {

class WireLink : public platform::SerialLink, public platform::VirtualSource {
 public:
  WireLink(platform::VirtualLoop& loop, sim::Wire& wire)
      : loop_(loop), wire_(wire), event_(loop, [this] {
          if (receive_ && wire_.available(now()) > 0) receive_();
        }) {
    loop_.addSource(*this);
  }
  ~WireLink() override { loop_.removeSource(*this); }

  bool oneAndAHalf = false;  // the port can do 1.5 stop bits
  bool busy = false;         // another program has the port
  int opens = 0;

  void pullOut() {
    wire_.unplug(now());
    event_.withdraw();
    if (vanished_) vanished_({platform::PortError::Kind::Vanished, "COM3: the adapter was pulled out"});
  }

  void setPortNumber(int number) override { number_ = number; }
  int portNumber() const override { return number_; }
  platform::PortError setSettings(const std::string& text) override {
    sim::Line line;
    char parity = 0;
    if (std::sscanf(text.c_str(), "%d,%c,%d,%lf", &line.baud, &parity, &line.dataBits, &line.stopBits) != 4)
      return {platform::PortError::Kind::BadSettings, "no line settings: " + text};
    line.parity = static_cast<char>(parity | 0x20);
    line_ = line;
    settings_ = text;
    return {};
  }
  std::string settings() const override { return settings_; }
  platform::PortError open() override {
    ++opens;
    if (wire_.isOpen() || busy) return {platform::PortError::Kind::Busy, "COM3: in use by another program"};
    if (line_.stopBits == 1.5 && !oneAndAHalf)
      return {platform::PortError::Kind::BadSettings, "COM3: the port cannot do 1.5 stop bits"};
    if (!wire_.open(line_, now())) return {platform::PortError::Kind::NoSuchDevice, "COM3: no such device"};
    return {};
  }
  void close() override {
    wire_.close(now());
    seen_ = 0;
    event_.withdraw();
  }
  bool isOpen() const override { return wire_.isOpen(); }
  void write(std::span<const std::uint8_t> bytes) override { wire_.write(bytes, now()); }
  std::size_t outBytesPending() const override { return static_cast<std::size_t>(wire_.pendingOut(now())); }
  std::size_t inBytesPending() const override { return static_cast<std::size_t>(wire_.available(now())); }
  std::vector<std::uint8_t> readBytes(std::size_t maxCount) override {
    auto bytes = wire_.take(now(), maxCount);
    seen_ = wire_.available(now());
    return bytes;
  }
  void clearOut() override { wire_.clearOut(now()); }
  void clearIn() override {
    wire_.clearIn(now());
    seen_ = 0;
    event_.withdraw();
  }
  void setDtr(bool) override {}
  void setRts(bool) override {}

  std::optional<platform::Instant> nextDue() const override {
    const auto due = wire_.nextDue();
    return due ? std::optional(platform::Instant(*due)) : std::nullopt;
  }
  void advanceTo(platform::Instant to) override {
    wire_.advanceTo(to.count());
    const int waiting = wire_.isOpen() ? wire_.available(to.count()) : 0;
    if (waiting > seen_) event_.raise();
    seen_ = waiting;
  }

 private:
  sim::Micros now() const { return loop_.now().count(); }
  platform::VirtualLoop& loop_;
  sim::Wire& wire_;
  platform::PortEvent event_;
  sim::Line line_;
  std::string settings_ = "9600,n,8,1";
  int number_ = 1;
  int seen_ = 0;  // bytes that wait and have raised the event
};

}  // namespace kvr::support
