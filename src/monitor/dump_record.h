// What a good monitor frame says, as values: the type of the record, nine registers at the moment of the dump, and
// memory.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "monitor/frame_search.h"

namespace kvr::monitor {

// One value of a memory cell; 256 means a cell that no record has reported.
using Cell = std::uint16_t;
inline constexpr Cell kUnknown = 256;

enum class RecordType { Sfr = 0, Ram = 1, Xdata = 2, Window = 3 };

struct DumpRecord {
  RecordType type = RecordType::Sfr;
  std::uint8_t firstAddress = 0;    // Sfr: address of the first byte of the data
  std::uint16_t windowAddress = 0;  // Window: as sent, not yet rounded down
  struct Register {
    std::uint8_t address;
    std::uint8_t value;
  };
  std::array<Register, 9> registers{};  // PSW, ACC, TCON, T2CON, CCON, IE, SP, R1, R0
  std::vector<std::uint8_t> data;

  std::uint8_t r1() const { return registers[7].value; }
  std::uint8_t r0() const { return registers[8].value; }
};

// Nothing for a type that this program does not know and for a frame too short to hold the registers.
std::optional<DumpRecord> readRecord(const Frame& frame);

// The four bytes that answer a firmware.
enum class Answer : std::uint8_t { Accepted = 0x50, SendAgain = 0x52, Continue = 0x54 };
std::array<std::uint8_t, 4> answerBytes(Answer answer);

}  // namespace kvr::monitor
