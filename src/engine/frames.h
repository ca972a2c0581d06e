// The frames that go out, as values. A frame is 46 B9 6A, length (two bytes, counted from the direction byte through
// the end byte), command, payload, sum, 16.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "catalogue/mcu_record.h"

namespace kvr::engine {

using Bytes = std::vector<std::uint8_t>;

inline constexpr std::array<std::uint8_t, 2> kSyncBytes = {0x7F, 0x7F};

enum class SumForm { OneByte, TwoBytes, BoardCrc };

inline SumForm sumFormOf(const catalogue::McuRecord& record) {
  return record.frame2 ? SumForm::TwoBytes : SumForm::OneByte;
}

// A whole frame around command and payload. The length follows from the payload and the form.
Bytes buildFrame(std::uint8_t command, std::span<const std::uint8_t> payload, SumForm form);

// The two bytes that name a model in the generic frame: from `code`, or from `altCode` when that is what the target
// reported. A code of two characters gives its value and FF.
struct CodeBytes {
  std::uint8_t high = 0xFF;
  std::uint8_t low = 0xFF;
  bool operator==(const CodeBytes&) const = default;
};
CodeBytes codeBytesOf(const catalogue::McuRecord& record, std::string_view reportedCode);

// The generic short frame: family, argument, 36 01, model code.
Bytes buildGenericFrame(const catalogue::McuRecord& record, std::uint8_t command, std::uint8_t argument,
                        std::string_view reportedCode, SumForm form);

// FE FE FE FE and a frame without payload; empty for commands that the fixed link does not know (it knows 82 and 8A).
Bytes buildFixedLinkFrame(std::uint8_t command, SumForm form);

}  // namespace kvr::engine
