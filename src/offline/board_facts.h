// What a connected board tells of itself, and what follows from it.
#pragma once

#include <cstdint>
#include <string>

#include "offline/file_buffer.h"

namespace kvr::offline {

struct BoardFacts {
  std::string firmwareVersion = "0";  // two hexadecimal digits
  std::int64_t capacity = 0;          // bytes usable in one memory
  bool secondBank = false;

  // The version as everything asks it: the text's leading decimal digits ("17" is 17, "1A" is 1).
  int version() const;
  // One stage of writing is all that this board takes.
  bool singleStage() const;
  // The last board address of the first stage.
  int firstStageLast() const;
  // The last byte of code that this board can hold.
  int lastHeldCode() const;
};

// How many of the bytes that the operator loaded the board will not program: they found no place in the chip, lie above
// the last code address, or in a part of the code that this board does not take.
int bytesLeftOut(const FileBuffer& file, std::int64_t codeLast, const BoardFacts& board);

// The line for the message pane; empty when nothing is left out.
std::string leftOutText(int bytes);

}  // namespace kvr::offline
