// What an off-line board makes of the image in its memory: it checks it, and programs chips from it by itself, as long
// as the download limit allows and with a number of its own in each.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "sim/chip_frames.h"
#include "sim/flash_memory.h"

namespace sim {

// Two memories of 64 KB; the second is empty on a board that has none.
struct BoardMemory {
  Bytes main = Bytes(65536, 0xFF);
  Bytes second;
};

// A running number as the image describes it.
struct BoardCounter {
  bool on = false;
  std::int64_t firstAddress = 0;  // of run 1, in the chip's memory
  int firstLength = 0;
  std::int64_t secondAddress = 0;  // of run 2
  int secondLength = 0;
  int step = 0;
  int radix = 255;  // 0 binary, 1 BCD, 2 ASCII
  std::uint32_t next = 0;

  // The field's bytes for `next`, most significant first, padded with zeros (the digit 0 in ASCII).
  Bytes field() const;
};

struct BoardHeader {
  std::string model;
  std::array<std::uint8_t, 2> code{}, altCode{};
  bool extSession = false, parityUsed = false, parityEven = false, frame2 = false, noOptions = false,
       topBlockFree = false, noDataFile = false;
  int pins = 0, checks = 0;
  std::array<std::uint8_t, 16> options{};
  std::int64_t mainFirst = 0, mainLast = 0, mainTarget = 0, mainTargetLast = 0;
  std::int64_t tailFirst = 0, tailLast = 0, tailTarget = 0, tailTargetLast = 0;
  std::int64_t codeLast = 0;
  int blockSize = 0;
  BoardCounter codeCounter, dataCounter;
};

struct BoardRun {
  bool done = false;
  std::string why;                         // empty when done
  std::array<std::uint8_t, 16> options{};  // as the board would send them
  std::int64_t leftOut = 0;                // bytes up to the end of the code that the image does not hold
};

class BoardJob {
 public:
  // `tailWritten`: the second stage took place. `memory` must outlive the job.
  BoardJob(BoardMemory& memory, bool tailWritten) : memory_(memory), tailWritten_(tailWritten) {}

  // Nothing, and why in `fault`, when the header's own CRC is wrong or its numbers make no sense.
  std::optional<BoardHeader> header(std::string& fault) const;
  // How many more chips the image allows.
  std::int64_t remaining() const;
  // Erases and writes one chip's memory; a success takes one off the limit and steps the numbers.
  BoardRun programNext(FlashMemory& chip);

 private:
  std::optional<std::uint8_t> source(const BoardHeader& header, std::int64_t target) const;
  std::optional<Bytes> blockOf(const BoardHeader& header, std::int64_t block) const;
  std::string burn(const BoardHeader& header, FlashMemory& chip, std::int64_t& leftOut);
  void takeOneOff();
  void stepNumbers(const BoardHeader& header);

  BoardMemory& memory_;
  bool tailWritten_;
};

}  // namespace sim
