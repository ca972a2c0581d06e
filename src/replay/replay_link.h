// A port whose far end is a recorded run: it answers what was answered then, as long after the same bytes of the host.
// The first bytes that the host did not send then are the difference; from there on the port is silent.
//
// A machine is not as even as the virtual world: where the host repeated itself, a few times more or fewer are no
// difference.
#pragma once

#include <deque>
#include <functional>
#include <optional>
#include <string>

#include "platform/serial_link.h"
#include "platform/virtual/virtual_loop.h"
#include "replay/script.h"

namespace kvr::replay {

class ReplayLink : public platform::SerialLink, public platform::VirtualSource {
 public:
  ReplayLink(platform::VirtualLoop& loop, const Script& script);
  ~ReplayLink() override { loop_.removeSource(*this); }
  ReplayLink(const ReplayLink&) = delete;
  ReplayLink& operator=(const ReplayLink&) = delete;

  // The user's Stop, and the end after a difference. `closes`: the port was closed with it.
  std::function<void(bool closes)> onStop;
  const std::string& difference() const { return difference_; }
  // What the host has not sent and did then; empty: nothing.
  std::string missing() const;

  void setPortNumber(int number) override { number_ = number; }
  int portNumber() const override { return number_; }
  std::string device() const override { return device_; }
  platform::PortError setSettings(const std::string& text) override;
  std::string settings() const override { return settings_; }
  platform::PortError open() override;
  void close() override;
  bool isOpen() const override { return open_; }
  void write(std::span<const std::uint8_t> bytes) override;
  std::size_t outBytesPending() const override;
  std::size_t inBytesPending() const override { return inbox_.size(); }
  std::vector<std::uint8_t> readBytes(std::size_t maxCount) override;
  std::vector<std::uint8_t> peekBytes() override { return {inbox_.begin(), inbox_.end()}; }
  void clearOut() override;
  void clearIn() override;
  void setDtr(bool) override {}
  void setRts(bool) override {}
  void keepLine(platform::ModemLine, bool) override { kept_ = true; }
  void freeLine() override { kept_ = false; }
  bool lineKept() const override { return kept_; }

  std::optional<platform::Instant> nextDue() const override;
  void advanceTo(platform::Instant now) override;

 private:
  struct Due {
    Deed deed;
    platform::Instant from;
    std::size_t next = 0;  // byte
    platform::Instant at() const;
  };
  bool matches(std::span<const std::uint8_t> bytes);
  void differ(std::span<const std::uint8_t> bytes);
  void release();
  void perform(const Deed& deed);
  void drain();
  double byteMicros() const;

  platform::VirtualLoop& loop_;
  const Script& script_;
  platform::PortEvent event_, gone_, stop_;
  std::size_t step_ = 0;  // the last one whose bytes have come
  int times_ = 1;         // how often they have
  std::size_t opened_ = 0;
  std::deque<Due> due_;
  std::deque<std::uint8_t> inbox_;
  double freeAt_ = 0;  // the line to the target, microseconds
  bool open_ = false, stopCloses_ = false, kept_ = false;
  int number_ = 1;
  std::string settings_ = "9600,n,8,1", device_, difference_;
  platform::PortError lost_;
};

}  // namespace kvr::replay
