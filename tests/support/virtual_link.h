// The serial port of the virtual world: a SerialLink over a simulated wire. Only the ports of `devices` exist.
#pragma once

#include <map>
#include <optional>

#include "platform/device_hold.h"
#include "platform/serial_link.h"
#include "platform/virtual/virtual_loop.h"
#include "sim/wire.h"

namespace kvr::support {

class VirtualLink : public platform::SerialLink, public platform::VirtualSource {
 public:
  VirtualLink(platform::VirtualLoop& loop, sim::Wire& wire);
  ~VirtualLink() override { loop_.removeSource(*this); }
  VirtualLink(const VirtualLink&) = delete;
  VirtualLink& operator=(const VirtualLink&) = delete;

  // --- The tester's side. ---
  std::map<int, std::string> devices{{1, "/dev/ttyV0"}};  // port number to device; all lead to the one wire
  platform::PortError refusesToOpen;                      // set: every opening fails with it ...
  int refusesAfter = 0;                                   // ... from this many good ones on
  void unplug();                                          // the adapter is pulled out
  bool hasModemLines = true;
  int opens = 0;
  int closes = 0;

  // --- SerialLink ---
  void setPortNumber(int number) override;
  int portNumber() const override { return number_; }
  void holdDevice() override;
  void releaseDevice() override { held_.release(); }
  std::string device() const override { return device_; }
  platform::PortError setSettings(const std::string& text) override;
  std::string settings() const override { return settings_; }
  platform::PortError open() override;
  void close() override;
  bool isOpen() const override { return wire_.isOpen(); }
  void write(std::span<const std::uint8_t> bytes) override { wire_.write(bytes, now()); }
  std::size_t outBytesPending() const override {
    return isOpen() ? static_cast<std::size_t>(wire_.pendingOut(now())) : 0;
  }
  std::size_t inBytesPending() const override {
    return isOpen() ? static_cast<std::size_t>(wire_.available(now())) : 0;
  }
  std::vector<std::uint8_t> readBytes(std::size_t maxCount) override;
  std::vector<std::uint8_t> peekBytes() override { return wire_.peek(now()); }
  void clearOut() override { wire_.clearOut(now()); }
  void clearIn() override;
  void setDtr(bool on) override;
  void setRts(bool on) override;
  void keepLine(platform::ModemLine line, bool on) override;
  void freeLine() override { kept_.reset(); }
  bool lineKept() const override { return kept_ && hasModemLines; }

  // --- VirtualSource ---
  std::optional<platform::Instant> nextDue() const override;
  void advanceTo(platform::Instant now) override;

 private:
  sim::Micros now() const { return loop_.now().count(); }
  void drain();
  static std::optional<sim::Line> lineOf(const std::string& text);
  platform::VirtualLoop& loop_;
  sim::Wire& wire_;
  platform::PortEvent event_;
  platform::PortEvent gone_;
  std::string settings_ = "9600,n,8,1";
  int number_ = 1;
  std::string device_;
  platform::HeldDevice held_;
  struct KeptLine {
    platform::ModemLine line;
    bool on;
  };
  bool keeps(platform::ModemLine line) const { return lineKept() && kept_->line == line; }
  void moveLines(sim::ModemLines lines);
  sim::ModemLines next_{true, true};  // at the next open
  std::optional<KeptLine> kept_;
  int told_ = 0;  // waiting bytes for which the event was raised already
};

}  // namespace kvr::support
