// The code as a target chip will hold it: both images put together by the chip's addresses, as far as the chip
// takes them. Lives for one session with a board.
#pragma once

#include <cstdint>
#include <vector>

#include "catalogue/address_range.h"
#include "catalogue/mcu_record.h"
#include "offline/board_inputs.h"

namespace kvr::offline {

struct FileBuffer {
  static constexpr std::size_t kSize = 65537;
  int first = 0;
  int last = 0;  // what the board takes for the end of code and data
  std::vector<std::uint8_t> bytes = std::vector<std::uint8_t>(kSize);
  // The parts of it that the user loaded, and how many loaded bytes found no place in it.
  catalogue::AddressRange code;
  catalogue::AddressRange data;
  int cut = 0;

  // Sets `count` bytes from `start` on to FFh, as far as they lie inside.
  void blank(std::int64_t start, std::int64_t count);
};

// The highest code address that a board can give a chip of this model, when no data image is in use. The first
// generation has none: 65536.
int boardCodeLimit(const catalogue::McuRecord& record);

FileBuffer prepareFileBuffer(const catalogue::McuRecord& record, const ImageView& code, const ImageView& data);

}  // namespace kvr::offline
