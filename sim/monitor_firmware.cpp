#include "sim/monitor_firmware.h"

#include <algorithm>

namespace sim {

namespace {

constexpr int kSizes[] = {128, 256, 1024, 512};  // by record type

}  // namespace

std::uint8_t MonitorApplication::draw() {
  state_ = state_ * 6364136223846793005U + 1442695040888963407U + config_.seed;
  return static_cast<std::uint8_t>(state_ >> 40);
}

std::vector<std::uint8_t> MonitorApplication::frame(int type, int address, const std::array<std::uint8_t, 9>& registers,
                                                    std::span<const std::uint8_t> values) {
  const std::size_t count = values.size() + 17;
  std::vector<std::uint8_t> bytes = {0xA5,
                                     0x5A,
                                     0xAA,
                                     static_cast<std::uint8_t>(count >> 8),
                                     static_cast<std::uint8_t>(count),
                                     static_cast<std::uint8_t>(type),
                                     0,
                                     static_cast<std::uint8_t>(address >> 8),
                                     static_cast<std::uint8_t>(address)};
  bytes.insert(bytes.end(), registers.begin(), registers.end());
  bytes.insert(bytes.end(), values.begin(), values.end());
  int sum = 0;
  for (std::size_t i = 2; i < bytes.size(); ++i) sum += bytes[i];
  bytes.push_back(static_cast<std::uint8_t>(sum));
  return bytes;
}

void MonitorApplication::start(Micros at) {
  due_ = at + config_.pause;
  turn_ = 0;
  state_ = config_.seed;
  answer_.clear();
}

void MonitorApplication::sendRecord(Micros at, BadFrame how) {
  std::vector<std::uint8_t> bytes = record_;
  if (how == BadFrame::badSum) bytes.back() ^= 0x55;
  if (how == BadFrame::cutShort) bytes.resize(bytes.size() / 2);
  if (how == BadFrame::tooLong) bytes[3] = 0x7F;
  if (how == BadFrame::unknownType) {
    bytes[5] = 9;
    bytes.back() = static_cast<std::uint8_t>(bytes.back() + 9 - record_[5]);
  }
  ++sent_;
  due_ = say(at, bytes) + config_.patience;
}

void MonitorApplication::advanceTo(Micros now) {
  while (due_ && *due_ <= now) {
    const Micros at = *due_;
    const int type = config_.types[turn_ % config_.types.size()];
    std::vector<std::uint8_t> values(static_cast<std::size_t>(kSizes[type & 3]));
    std::generate(values.begin(), values.end(), [this] { return draw(); });
    std::array<std::uint8_t, 9> registers{};
    std::generate(registers.begin(), registers.end(), [this] { return draw(); });
    record_ = frame(type, type == 0 ? config_.firstSfr : type == 3 ? config_.windowAddress : 0, registers, values);
    Micros free = at;
    if (config_.textBetween) {
      const std::string text = "dump " + std::to_string(turn_) + "\r\n";
      free = say(at, std::vector<std::uint8_t>(text.begin(), text.end()));
    }
    const BadFrame how = turn_ < config_.faults.size() ? config_.faults[turn_] : BadFrame::none;
    ++turn_;
    sendRecord(free, how);
  }
}

void MonitorApplication::hear(Micros end, std::uint8_t byte) {
  answer_.push_back(byte);
  if (answer_.size() > 4) answer_.erase(answer_.begin());
  if (answer_.size() < 4 || answer_[0] != 0xFE || answer_[1] != 0xAA) return;
  const int code = answer_[2];
  const bool sound = answer_[3] == static_cast<std::uint8_t>(0xAA + code);
  answer_.clear();
  if (sound)
    onAnswer(end, code);
  else
    ++strange_;
}

void MonitorApplication::onAnswer(Micros at, int code) {
  if (code == 0x50) {
    ++accepted_;
    due_ = at + config_.pause;
  } else if (code == 0x52) {
    ++resends_;
    if (!record_.empty()) sendRecord(at, BadFrame::none);
  } else if (code == 0x54) {
    ++continues_;
    due_ = at;
  } else {
    ++strange_;
  }
}

}  // namespace sim
