// A port that is never there, for what needs none.
#pragma once

#include "platform/serial_link.h"

namespace kvr::support {

class NoLink : public platform::SerialLink {
 public:
  void setPortNumber(int) override {}
  int portNumber() const override { return 1; }
  platform::PortError setSettings(const std::string&) override { return {}; }
  std::string settings() const override { return {}; }
  platform::PortError open() override { return {}; }
  void close() override {}
  bool isOpen() const override { return false; }
  void write(std::span<const std::uint8_t>) override {}
  std::size_t outBytesPending() const override { return 0; }
  std::size_t inBytesPending() const override { return 0; }
  std::vector<std::uint8_t> readBytes(std::size_t) override { return {}; }
  std::vector<std::uint8_t> peekBytes() override { return {}; }
  void clearOut() override {}
  void clearIn() override {}
  void setDtr(bool) override {}
  void setRts(bool) override {}
  void keepLine(platform::ModemLine, bool) override {}
  void freeLine() override {}
  bool lineKept() const override { return false; }
};

}  // namespace kvr::support
