#include "platform/qt/serial_device.h"

namespace kvr::platform {

std::string refusedPart(const LineSettings& wanted, const std::optional<LineBits>& held) {
  if (!held) return {};
  const bool parity = wanted.parity != QSerialPort::NoParity;
  if (held->parity != parity) return "parity";
  if (parity && held->odd != (wanted.parity == QSerialPort::OddParity)) return "parity";
  if (held->dataBits != wanted.dataBits) return std::to_string(wanted.dataBits) + " data bits";
  if (held->twoStop != (wanted.stopBits != QSerialPort::OneStop)) return held->twoStop ? "1 stop bit" : "2 stop bits";
  return {};
}

}  // namespace kvr::platform
