// The serial port of the real machine, over QtSerialPort.
#pragma once

#include <QSerialPort>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/device_hold.h"
#include "platform/event_loop.h"
#include "platform/qt/line_settings.h"
#include "platform/qt/serial_device.h"
#include "platform/serial_link.h"

namespace kvr::platform {

class QtSerialLink : public SerialLink {
 public:
  // `deviceOf` gives the device path of a port number; empty: the number has none.
  QtSerialLink(EventLoop& loop, std::function<std::string(int)> deviceOf);
  ~QtSerialLink() override;

  void setPortNumber(int number) override;
  int portNumber() const override { return number_; }
  void holdDevice() override;
  void releaseDevice() override { held_.release(); }
  std::string device() const override { return device_; }
  PortError setSettings(const std::string& text) override;
  std::string settings() const override { return settings_; }
  PortError open() override;
  void close() override;
  bool isOpen() const override { return port_.isOpen() && !gone_ && !parked_; }
  void write(std::span<const std::uint8_t> bytes) override;
  std::size_t outBytesPending() const override;
  std::size_t inBytesPending() const override;
  std::vector<std::uint8_t> readBytes(std::size_t maxCount) override;
  std::vector<std::uint8_t> peekBytes() override;
  void clearOut() override;
  void clearIn() override;
  void setDtr(bool on) override;
  void setRts(bool on) override;
  void keepLine(ModemLine line, bool on) override;
  void freeLine() override;
  bool lineKept() const override { return kept_ && kept_->taken; }
  PortError setFlowControl(FlowControl flow) override;
  void setBreak(bool on) override;
  std::optional<InputLines> inputLines() const override;
  int trueBaud() const override;

 private:
  struct KeptLine {
    ModemLine line = ModemLine::Dtr;
    bool on = true;
    bool taken = true;  // by the device that was opened last
  };
  PortError openDevice(const std::string& device);
  PortError apply(const LineSettings& line);
  PortError applyFlow(FlowControl flow);
  PortError refused(const std::string& what) const;
  void bytesCame();
  void takeWaiting(bool toldByQt);
  bool drained();
  void drainOrDrop();
  PortError takeUp();
  ModemLines wantedLines() const;
  bool keeps(ModemLine line) const { return kept_ && kept_->line == line; }
  void moveKeptLine();
  void setModemLines(bool bothUp);
  void dropPort();
  void onPortError(QSerialPort::SerialPortError error);
  QSerialPort port_;
  PortEvent received_;
  std::vector<std::uint8_t> came_;  // read from the device and not asked for yet
  PortEvent goneEvent_;
  std::function<std::string(int)> deviceOf_;
  std::string device_;
  HeldDevice held_;
  ModemLines lines_;                      // for the next open; then both are on again
  FlowControl flow_ = FlowControl::None;  // for the next open; then there is none again
  std::optional<KeptLine> kept_;
  std::string settings_ = "9600,n,8,1";
  LineSettings line_;
  LineSettings applied_;
  int number_ = 1;
  bool gone_ = false;
  bool draining_ = false;
  bool parked_ = false;  // closed for the program; still in hand, so that no open and no close moves a line
};

}  // namespace kvr::platform
