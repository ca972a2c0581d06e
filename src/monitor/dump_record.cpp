#include "monitor/dump_record.h"

namespace kvr::monitor {

namespace {

constexpr std::array<std::uint8_t, 9> kRegisterAddresses{208, 224, 136, 200, 216, 168, 129, 1, 0};
constexpr std::size_t kTypeAt = 3;
constexpr std::size_t kAddressAt = 5;
constexpr std::size_t kRegistersAt = 7;
constexpr std::size_t kDataAt = 16;
constexpr std::size_t kSumBytes = 1;

}  // namespace

std::optional<DumpRecord> readRecord(const Frame& frame) {
  if (frame.size() < kDataAt + kSumBytes || frame[kTypeAt] > static_cast<int>(RecordType::Window)) return {};
  DumpRecord record;
  record.type = static_cast<RecordType>(frame[kTypeAt]);
  record.firstAddress = frame[kAddressAt + 1];
  record.windowAddress = static_cast<std::uint16_t>(frame[kAddressAt] << 8 | frame[kAddressAt + 1]);
  for (std::size_t i = 0; i < record.registers.size(); ++i)
    record.registers[i] = {kRegisterAddresses[i], frame[kRegistersAt + i]};
  record.data.assign(frame.begin() + kDataAt, frame.end() - kSumBytes);
  return record;
}

std::array<std::uint8_t, 4> answerBytes(Answer answer) {
  const auto code = static_cast<std::uint8_t>(answer);
  return {0xFE, 0xAA, code, static_cast<std::uint8_t>(0xAA + code)};
}

}  // namespace kvr::monitor
