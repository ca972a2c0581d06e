#include "tests/recorder/record.h"

#include <cstdio>
#include <regex>
#include <sstream>

namespace kvr::recorder {

namespace {

std::string hex(std::uint64_t value, int digits) {
  char text[20];
  std::snprintf(text, sizeof text, "%0*llx", digits, static_cast<unsigned long long>(value));
  return text;
}

std::string hexBytes(std::span<const std::uint8_t> bytes) {
  constexpr char kDigits[] = "0123456789abcdef";
  std::string text;
  for (const std::uint8_t byte : bytes) {
    text += kDigits[byte >> 4];
    text += kDigits[byte & 15];
  }
  return text;
}

}  // namespace

std::uint64_t hashOf(std::string_view text) {
  std::uint64_t hash = 0xCBF29CE484222325U;
  for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3U;
  return hash;
}

void Record::unit(const sim::Unit& unit) {
  line_ += std::to_string(unit.start - begin_) + (unit.direction == sim::Direction::hostToDevice ? " > " : " < ") +
           std::to_string(unit.line.baud) + ',' + unit.line.parity + ' ' + hexBytes(unit.bytes) + '\n';
}

void Record::pane(const std::string& text) {
  pane_ += "--- pane\n" + text + '\n';
}

void Record::box(const std::string& title, const std::string& text) {
  pane_ += "--- box " + title + '\n' + text + '\n';
}

void Record::memory(std::string_view what, std::span<const std::uint8_t> bytes) {
  memory_ += "--- " + std::string(what) + '\n';
  constexpr std::size_t kRow = 32;
  for (std::size_t at = 0; at < bytes.size(); at += kRow)
    memory_ += hex(at, 5) + ' ' + hexBytes(bytes.subspan(at, std::min(kRow, bytes.size() - at))) + '\n';
}

void Record::remark(const std::string& text) {
  remarks_ += text + '\n';
}

std::string Record::hashes() const {
  std::string all = hex(hashOf(line_ + pane_ + memory_ + sign_), 16);
  for (const std::string* part : {&line_, &pane_, &memory_}) all += '\t' + hex(hashOf(*part) >> 32, 8);
  return all + '\t' + sign_;
}

Record Record::withoutTimes() const {
  static const std::regex timeOfDay(R"(\d\d:\d\d(:\d\d)?)");
  Record untimed = *this;
  untimed.pane_ = std::regex_replace(pane_, timeOfDay, "--:--");
  untimed.line_.clear();
  std::istringstream units(line_);
  for (std::string unit; std::getline(units, unit);) untimed.line_ += unit.substr(unit.find(' ') + 1) + '\n';
  return untimed;
}

std::string Record::text() const {
  return "sign " + sign_ + "\n" + pane_ + "--- line (us from the press)\n" + line_ + memory_ + "--- remarks\n" +
         remarks_;
}

}  // namespace kvr::recorder
