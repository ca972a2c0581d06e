#include "platform/qt/qt_serial_link.h"

#include <QElapsedTimer>
#include <QThread>
#include <algorithm>
#include <utility>

namespace kvr::platform {
namespace {

constexpr int kDrainLimitMs = 1000;
constexpr std::size_t kBusyRead = 2048;  // no answer of a chip is that long
constexpr std::size_t kLargestRead = 64 * 1024;

PortError notOpened(const std::string& device, const QSerialPort& port) {
  using Kind = PortError::Kind;
  const std::string reason = port.errorString().toStdString();
  // The system has just let this program in, so a refusal now is the lock of another program.
  if (port.error() == QSerialPort::PermissionError && reason.find("creating") == std::string::npos)
    return {Kind::Busy, device + ": busy"};
  if (port.error() == QSerialPort::PermissionError)
    return {Kind::Denied, device + ": permission denied (no right to write to the folder of port locks)"};
  if (port.error() == QSerialPort::DeviceNotFoundError) return {Kind::NoSuchDevice, device + ": no such device"};
  return {Kind::Other, device + ": cannot be opened"};
}

}  // namespace

QtSerialLink::QtSerialLink(EventLoop& loop, std::function<std::string(int)> deviceOf)
    : received_(loop,
                [this] {
                  if (receive_ && isOpen()) receive_();
                }),
      goneEvent_(loop,
                 [this] {
                   const PortError error{PortError::Kind::Vanished, device_ + ": the port has vanished"};
                   if (vanished_) vanished_(error);
                 }),
      deviceOf_(std::move(deviceOf)) {
  QObject::connect(&port_, &QSerialPort::readyRead, &port_, [this] {
    if (parked_)
      port_.clear(QSerialPort::Input);
    else
      bytesCame();
  });
  QObject::connect(&port_, &QSerialPort::errorOccurred, &port_,
                   [this](QSerialPort::SerialPortError error) { onPortError(error); });
}

void QtSerialLink::bytesCame() {
  takeWaiting(!draining_);
  received_.raise();
}

QtSerialLink::~QtSerialLink() {
  port_.disconnect();
  close();
  dropPort();
}

void QtSerialLink::setPortNumber(int number) {
  held_.numberSet(number != number_);
  number_ = number;
}

void QtSerialLink::holdDevice() {
  held_.hold();
  if (isOpen()) held_.opened(device_);
}

PortError QtSerialLink::setSettings(const std::string& text) {
  const auto line = lineSettingsOf(text);
  if (!line) return {PortError::Kind::BadSettings, "\"" + text + "\": no such line setting"};
  settings_ = text;
  line_ = *line;
  if (!isOpen() || *line == applied_) return {};
  drainOrDrop();
  return apply(*line);
}

PortError QtSerialLink::open() {
  if (isOpen()) return {PortError::Kind::Busy, device_ + ": already open"};
  const std::string device = held_.device().empty() ? deviceOf_(number_) : held_.device();
  PortError error;
  if (parked_ && device == device_ && !deviceGone(static_cast<std::intptr_t>(port_.handle())))
    error = takeUp();
  else if (dropPort(); device.empty())
    error = {PortError::Kind::NoSuchDevice, "COM" + std::to_string(number_) + ": no such device"};
  else
    error = openDevice(device);
  lines_ = {};
  flow_ = FlowControl::None;
  if (!error) held_.opened(device);
  return error;
}

PortError QtSerialLink::openDevice(const std::string& device) {
  DeviceGuard guard(device);
  if (guard.error()) return guard.error();
  guard.prepare(wantedLines());
  device_ = device;
  gone_ = false;
  goneEvent_.withdraw();
  port_.setPortName(QString::fromStdString(device));
  port_.setFlowControl(QSerialPort::NoFlowControl);
  // Parity follows after the open: a pseudo-terminal answers an open that asks for it with an error.
  applied_ = line_;
  applied_.parity = QSerialPort::NoParity;
  port_.setParity(QSerialPort::NoParity);
  port_.setDataBits(line_.dataBits);
  port_.setStopBits(line_.stopBits);
  port_.setBaudRate(line_.baud);
  if (!port_.open(QIODevice::ReadWrite)) {
    const PortError error = notOpened(device, port_);
    dropPort();
    return error;
  }
  setModemLines(true);
  PortError error = apply(line_);
  if (!error) error = applyFlow(flow_);
  if (error)
    dropPort();
  else
    port_.clear();
  return error;
}

// The port was never closed for the system.
PortError QtSerialLink::takeUp() {
  const PortError error = apply(line_);
  if (error) return error;
  port_.clear();
  parked_ = false;
  setModemLines(false);
  return {};
}

ModemLines QtSerialLink::wantedLines() const {
  ModemLines wanted = lines_;
  if (kept_) (kept_->line == ModemLine::Dtr ? wanted.dtr : wanted.rts) = kept_->on;
  return wanted;
}

// The system's open has raised both; in a port that was kept in hand they are as they were left.
void QtSerialLink::setModemLines(bool bothUp) {
  if (!keeps(ModemLine::Dtr) && (!bothUp || !lines_.dtr)) port_.setDataTerminalReady(lines_.dtr);
  if (!keeps(ModemLine::Rts) && (!bothUp || !lines_.rts)) port_.setRequestToSend(lines_.rts);
  moveKeptLine();
}

void QtSerialLink::moveKeptLine() {
  if (!kept_ || !port_.isOpen()) return;
  kept_->taken =
      kept_->line == ModemLine::Dtr ? port_.setDataTerminalReady(kept_->on) : port_.setRequestToSend(kept_->on);
}

void QtSerialLink::keepLine(ModemLine line, bool on) {
  kept_ = {line, on};
  moveKeptLine();
}

void QtSerialLink::freeLine() {
  kept_.reset();
  if (parked_) dropPort();
}

PortError QtSerialLink::apply(const LineSettings& line) {
  if (line.oneAndAHalf && line.dataBits != QSerialPort::Data5)
    return {PortError::Kind::BadSettings, device_ + ": 1.5 stop bits go with 5 data bits only"};
  if (line.dataBits != applied_.dataBits) port_.setDataBits(line.dataBits);
  if (line.stopBits != applied_.stopBits) port_.setStopBits(line.stopBits);
  if (line.parity != applied_.parity) port_.setParity(line.parity);
  const bool rateTaken = line.baud == applied_.baud || port_.setBaudRate(line.baud);
  applied_ = line;
  const auto handle = static_cast<std::intptr_t>(port_.handle());
  if (deviceGone(handle)) return {};  // told as a port that has vanished
  if (!rateTaken) return refused(std::to_string(line.baud) + " baud");
  return refused(isPseudoTerminal(handle) ? "" : refusedPart(line, lineBitsOf(handle)));
}

PortError QtSerialLink::applyFlow(FlowControl flow) {
  const bool hardware = flow == FlowControl::RtsCts;
  if (hardware && kept_ && kept_->line == ModemLine::Rts)
    return {PortError::Kind::BadSettings, device_ + ": no RTS/CTS flow control while RTS is a switch"};
  const bool taken = port_.setFlowControl(hardware                       ? QSerialPort::HardwareControl
                                          : flow == FlowControl::XonXoff ? QSerialPort::SoftwareControl
                                                                         : QSerialPort::NoFlowControl);
  const auto handle = static_cast<std::intptr_t>(port_.handle());
  if (deviceGone(handle)) return {};  // told as a port that has vanished
  return refused(taken && flowControlOf(handle).value_or(flow) == flow ? "" : "flow control");
}

PortError QtSerialLink::refused(const std::string& what) const {
  if (what.empty()) return {};
  return {PortError::Kind::BadSettings, device_ + ": " + what + " refused"};
}

void QtSerialLink::close() {
  if (parked_) return;
  if (isOpen()) drainOrDrop();
  if (!lineKept() || !isOpen()) return dropPort();
  received_.withdraw();
  came_.clear();
  parked_ = true;
}

void QtSerialLink::dropPort() {
  received_.withdraw();
  came_.clear();
  parked_ = false;
  if (port_.isOpen()) port_.close();
}

void QtSerialLink::drainOrDrop() {
  draining_ = true;
  if (!drained()) port_.clear(QSerialPort::Output);
  draining_ = false;
}

// The wait is for the wire alone and shorter than a blink in the common case; a chip must get whole frames.
bool QtSerialLink::drained() {
  QElapsedTimer time;
  time.start();
  while (port_.bytesToWrite() > 0 && time.elapsed() < kDrainLimitMs)
    if (!port_.waitForBytesWritten(static_cast<int>(kDrainLimitMs - time.elapsed()))) return false;
  const auto handle = static_cast<std::intptr_t>(port_.handle());
  std::size_t left = bytesInDriver(handle);
  while (left > 0 && time.elapsed() < kDrainLimitMs) {
    const auto wireMs = static_cast<unsigned long>(left * 11'000 / static_cast<unsigned>(applied_.baud));
    QThread::msleep(std::clamp(wireMs, 1UL, 100UL));
    left = bytesInDriver(handle);
  }
  if (left > 0 || port_.bytesToWrite() > 0) return false;
  drainDevice(handle);
  return true;
}

void QtSerialLink::write(std::span<const std::uint8_t> bytes) {
  if (!isOpen() || bytes.empty()) return;
  port_.write(reinterpret_cast<const char*>(bytes.data()), static_cast<qint64>(bytes.size()));
  port_.flush();
}

std::size_t QtSerialLink::outBytesPending() const {
  if (!isOpen()) return 0;
  return static_cast<std::size_t>(port_.bytesToWrite()) + bytesInDriver(static_cast<std::intptr_t>(port_.handle()));
}

// On a busy line each turn of Qt's loop costs more than the few bytes that it brings, so the device is asked for more
// at once. Only while Qt itself tells of bytes: a notice that finds none later is a device that has gone, to Qt.
void QtSerialLink::takeWaiting(bool toldByQt) {
  const QByteArray bytes = port_.readAll();
  came_.insert(came_.end(), bytes.begin(), bytes.end());
  if (!toldByQt || static_cast<std::size_t>(bytes.size()) < kBusyRead) return;
  const auto more = waitingBytes(static_cast<std::intptr_t>(port_.handle()), kLargestRead);
  came_.insert(came_.end(), more.begin(), more.end());
}

std::size_t QtSerialLink::inBytesPending() const {
  return isOpen() ? came_.size() + static_cast<std::size_t>(port_.bytesAvailable()) : 0;
}

std::vector<std::uint8_t> QtSerialLink::readBytes(std::size_t maxCount) {
  if (!isOpen()) return {};
  takeWaiting(false);
  if (maxCount == 0 || maxCount >= came_.size()) return std::exchange(came_, {});
  const auto end = came_.begin() + static_cast<std::ptrdiff_t>(maxCount);
  std::vector<std::uint8_t> bytes(came_.begin(), end);
  came_.erase(came_.begin(), end);
  return bytes;
}

std::vector<std::uint8_t> QtSerialLink::peekBytes() {
  if (!isOpen()) return {};
  takeWaiting(false);
  return came_;
}

void QtSerialLink::clearOut() {
  if (isOpen()) port_.clear(QSerialPort::Output);
}

void QtSerialLink::clearIn() {
  if (isOpen()) port_.clear(QSerialPort::Input);
  came_.clear();
  received_.withdraw();
}

void QtSerialLink::setDtr(bool on) {
  if (isOpen() && !keeps(ModemLine::Dtr))
    port_.setDataTerminalReady(on);
  else
    lines_.dtr = on;
}

void QtSerialLink::setRts(bool on) {
  if (isOpen() && !keeps(ModemLine::Rts))
    port_.setRequestToSend(on);
  else
    lines_.rts = on;
}

PortError QtSerialLink::setFlowControl(FlowControl flow) {
  if (isOpen()) return applyFlow(flow);
  flow_ = flow;
  return {};
}

void QtSerialLink::setBreak(bool on) {
  if (isOpen()) port_.setBreakEnabled(on);
}

std::optional<InputLines> QtSerialLink::inputLines() const {
  return isOpen() ? inputLinesOf(static_cast<std::intptr_t>(port_.handle())) : std::nullopt;
}

int QtSerialLink::trueBaud() const {
  return isOpen() ? trueBaudOf(static_cast<std::intptr_t>(port_.handle())) : 0;
}

// Called inside Qt's own slots: only notes. A device that is gone would report without end while its port stays open,
// so the port is closed at the next turn of Qt's loop, before anybody hears of it.
void QtSerialLink::onPortError(QSerialPort::SerialPortError error) {
  if (error == QSerialPort::NoError || gone_ || !port_.isOpen()) return;
  if (error == QSerialPort::TimeoutError || error == QSerialPort::UnsupportedOperationError) return;
  if (!deviceGone(static_cast<std::intptr_t>(port_.handle()))) return;
  gone_ = true;
  QMetaObject::invokeMethod(
      &port_,
      [this] {
        if (!gone_) return;
        const bool inUse = !parked_;
        dropPort();
        if (inUse) goneEvent_.raise();
      },
      Qt::QueuedConnection);
}

}  // namespace kvr::platform
