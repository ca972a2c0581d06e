#include "platform/qt/line_settings.h"

#include <algorithm>
#include <vector>

#include "platform/text.h"

namespace kvr::platform {
namespace {

std::vector<std::string> fieldsOf(const std::string& text) {
  std::vector<std::string> fields;
  std::size_t at = 0;
  for (;;) {
    const std::size_t comma = text.find(',', at);
    fields.push_back(upper(trim(text.substr(at, comma - at))));
    if (comma == std::string::npos) return fields;
    at = comma + 1;
  }
}

bool isNumber(const std::string& text) {
  return !text.empty() && text.size() < 9 &&
         std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

}  // namespace

std::optional<LineSettings> lineSettingsOf(const std::string& text) {
  const auto fields = fieldsOf(text);
  if (fields.size() != 4 || !isNumber(fields[0])) return std::nullopt;
  LineSettings line;
  line.baud = wholeOf(fields[0]);
  if (line.baud < 1) return std::nullopt;
  if (fields[1] == "E")
    line.parity = QSerialPort::EvenParity;
  else if (fields[1] == "O")
    line.parity = QSerialPort::OddParity;
  else if (fields[1] != "N")
    return std::nullopt;
  if (!isNumber(fields[2])) return std::nullopt;
  const int dataBits = wholeOf(fields[2]);
  if (dataBits < 5 || dataBits > 8) return std::nullopt;
  line.dataBits = static_cast<QSerialPort::DataBits>(dataBits);
  if (fields[3] == "2" || fields[3] == "1.5")
    line.stopBits = QSerialPort::TwoStop;
  else if (fields[3] != "1")
    return std::nullopt;
  line.oneAndAHalf = fields[3] == "1.5";
  return line;
}

}  // namespace kvr::platform
