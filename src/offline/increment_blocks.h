// The header's two blocks that tell a board where the serial values lie and how they grow.
//
//   0  1  1: the board advances this value
//   1  3  first address of run 1, in the chip's code space
//   4  1  length of run 1
//   5  3  first address of run 2; when the value is not split, the address of its last byte
//   8  1  length of run 2, 0 when the value is not split
//   9  1  the step
//   10 1  FFh; with the value on, its form: 0 HEX, 1 BCD, 2 ASCII
//
// A chip is programmed in pages of 128 bytes, so a value that crosses a multiple of 128 is stored in two runs. Numbers
// that do not fit their field wrap to its low bytes.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "offline/board_inputs.h"

namespace kvr::offline {

struct IncrementBlock {
  std::array<std::uint8_t, 16> bytes{};
  std::int64_t start = 0;  // the value's first byte in the chip's code space; may be negative
};

// `base` is where the value's memory begins in the chip's code space.
IncrementBlock makeIncrementBlock(const IncrementField& field, int base);

// The next value as the header holds it.
std::array<std::uint8_t, 4> nextValueBytes(const IncrementField& field);

// True when some chip of the batch would get a value above 2147483648.
bool incrementOverflows(const IncrementField& field, std::int64_t limit);

// The message for the user whose serial value would overflow.
std::string incrementOverflowText(bool dataField);

}  // namespace kvr::offline
