// The text "9600,n,8,1" as values that a serial port takes.
#pragma once

#include <QSerialPort>
#include <optional>
#include <string>

namespace kvr::platform {

struct LineSettings {
  qint32 baud = 9600;
  QSerialPort::Parity parity = QSerialPort::NoParity;
  QSerialPort::DataBits dataBits = QSerialPort::Data8;
  QSerialPort::StopBits stopBits = QSerialPort::OneStop;
  bool oneAndAHalf = false;  // 1.5 stop bits were asked for, which hardware makes of 2 at 5 data bits and nowhere else
  bool operator==(const LineSettings&) const = default;
};

// Nothing: the text is no line setting, or names one that serial hardware does not have (4 data bits).
std::optional<LineSettings> lineSettingsOf(const std::string& text);

}  // namespace kvr::platform
