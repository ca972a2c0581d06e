// A port that tells a recorder what passes through it, on top of the port that carries it. While the recorder is off it
// only passes on.
//
// What has come is taken from the port below at once, so that each byte is noted with the time at which it came, also
// those that nobody reads; it waits here until the holder of the port takes it.
#pragma once

#include <deque>

#include "engine/line_recorder.h"
#include "platform/serial_link.h"

namespace kvr::engine {

class TracingLink : public platform::SerialLink {
 public:
  TracingLink(platform::SerialLink& below, LineRecorder& recorder);
  TracingLink(const TracingLink&) = delete;
  TracingLink& operator=(const TracingLink&) = delete;

  void setPortNumber(int number) override { below_.setPortNumber(number); }
  int portNumber() const override { return below_.portNumber(); }
  void holdDevice() override { below_.holdDevice(); }
  void releaseDevice() override { below_.releaseDevice(); }
  std::string device() const override { return below_.device(); }
  platform::PortError setSettings(const std::string& text) override;
  std::string settings() const override { return below_.settings(); }
  platform::PortError open() override;
  void close() override;
  bool isOpen() const override { return below_.isOpen(); }
  void write(std::span<const std::uint8_t> bytes) override;
  std::size_t outBytesPending() const override { return below_.outBytesPending(); }
  std::size_t inBytesPending() const override { return inbox_.size() + below_.inBytesPending(); }
  std::vector<std::uint8_t> readBytes(std::size_t maxCount) override;
  std::vector<std::uint8_t> peekBytes() override;
  void clearOut() override { below_.clearOut(); }
  void clearIn() override;
  void setDtr(bool on) override;
  void setRts(bool on) override;
  platform::PortError setFlowControl(platform::FlowControl control) override { return below_.setFlowControl(control); }
  void setBreak(bool on) override { below_.setBreak(on); }
  std::optional<platform::InputLines> inputLines() const override { return below_.inputLines(); }
  int trueBaud() const override { return below_.trueBaud(); }
  void keepLine(platform::ModemLine line, bool on) override;
  void freeLine() override { below_.freeLine(); }
  bool lineKept() const override { return below_.lineKept(); }

 private:
  void bytesCame();
  void takeIn();
  void drop();
  platform::SerialLink& below_;
  LineRecorder& recorder_;
  std::deque<std::uint8_t> inbox_;
};

}  // namespace kvr::engine
