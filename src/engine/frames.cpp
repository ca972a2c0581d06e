#include "engine/frames.h"

#include <array>
#include <numeric>

#include "engine/board_crc.h"
#include "platform/text.h"

namespace kvr::engine {

Bytes buildFrame(std::uint8_t command, std::span<const std::uint8_t> payload, SumForm form) {
  const std::size_t sumSize = form == SumForm::OneByte ? 1 : 2;
  const std::size_t length = 5 + payload.size() + sumSize;
  Bytes frame = {0x46, 0xB9, 0x6A, static_cast<std::uint8_t>(length >> 8), static_cast<std::uint8_t>(length), command};
  frame.insert(frame.end(), payload.begin(), payload.end());
  const std::span<const std::uint8_t> body(frame.data() + 2, frame.size() - 2);
  if (form == SumForm::BoardCrc) {
    const std::uint16_t crc = boardCrc(body);
    frame.push_back(static_cast<std::uint8_t>(crc));
    frame.push_back(static_cast<std::uint8_t>(crc >> 8));
  } else {
    const unsigned sum = std::accumulate(body.begin(), body.end(), 0u);
    if (form == SumForm::TwoBytes) frame.push_back(static_cast<std::uint8_t>(sum >> 8));
    frame.push_back(static_cast<std::uint8_t>(sum));
  }
  frame.push_back(0x16);
  return frame;
}

CodeBytes codeBytesOf(const catalogue::McuRecord& record, std::string_view reportedCode) {
  const bool second = reportedCode != record.code && reportedCode == record.altCode && !record.altCode.empty();
  const std::string_view code = second ? record.altCode : record.code;
  if (code.size() == 2) return {static_cast<std::uint8_t>(platform::hexOf(code)), 0xFF};
  const std::string four = platform::padLeft(code, 4, 'F');
  return {static_cast<std::uint8_t>(platform::hexOf(four.substr(0, 2))),
          static_cast<std::uint8_t>(platform::hexOf(four.substr(2)))};
}

Bytes buildGenericFrame(const catalogue::McuRecord& record, std::uint8_t command, std::uint8_t argument,
                        std::string_view reportedCode, SumForm form) {
  const CodeBytes code = codeBytesOf(record, reportedCode);
  const std::array<std::uint8_t, 6> payload = {
      static_cast<std::uint8_t>(numberOf(record.family)), argument, 0x36, 0x01, code.high, code.low};
  return buildFrame(command, payload, form);
}

Bytes buildFixedLinkFrame(std::uint8_t command, SumForm form) {
  if (command != 0x82 && command != 0x8A) return {};
  Bytes frame(4, 0xFE);
  const Bytes tail = buildFrame(command, {}, form);
  frame.insert(frame.end(), tail.begin(), tail.end());
  return frame;
}

}  // namespace kvr::engine
