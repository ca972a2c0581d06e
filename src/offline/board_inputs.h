// What an off-line board's memory image is made of: values taken from the controls and the image buffers once, before
// the image is built.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>

#include "catalogue/mcu_record.h"

namespace kvr::offline {

// An image buffer as the board needs it: its bytes by address and the range that its files have filled.
struct ImageView {
  std::span<const std::uint8_t> bytes;
  int rangeStart = 0;
  int rangeEnd = 0;
  bool loaded = false;
};

// A running serial value that the board is to advance by itself.
struct IncrementField {
  bool enabled = false;
  int last = 0;             // address of its last byte, 0..65535, counted from the start of its own memory
  std::int64_t length = 0;  // bytes
  std::string next;         // the next chip's value, decimal
  std::int64_t step = 0;
  int radix = 0;  // 0 HEX, 1 BCD, 2 ASCII
};

struct BoardInputs {
  const catalogue::McuRecord* record = nullptr;
  std::string device;  // the model's name as the window shows it
  int pins = 40;
  std::array<bool, 3> sorter{};            // switches of a sorting machine, elements 1 to 3 of che_staple
  std::array<std::uint8_t, 17> options{};  // the option bytes that the panel's choices make
  IncrementField codeIncrement;
  IncrementField dataIncrement;
  std::int64_t limit = 0;     // chips the board may program, 1..1000000
  std::int64_t capacity = 0;  // bytes usable in one memory of the board
};

}  // namespace kvr::offline
