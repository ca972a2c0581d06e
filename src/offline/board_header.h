// The 256-byte header of a board's memory image: the model's data, the option bytes, what the board holds of the code
// and where the chip's areas lie. Numbers are big-endian, but for the CRC at the end.
//
//   0    31  model name            64   3  main code: first board address      152  4*8  areas A to D
//   32   2   code                  67   3  main code: last board address       184  4*9  ranges E to H
//   34   2   second code           70   3  main code: first chip address       220  16   data increment block
//   36   4   extSession, parityUsed, parityEven, frame2 (FFh: set)             236  4    next data value
//   40   2   noOptions, topBlockFree                                           254  2    CRC of 0..253, low byte first
//   42   1   pins                  73   3  main code: last chip address
//   43   1   noDataFile            79   3  end of the main code area
//   44   1   sorter switches       88   12 second code area: board and chip addresses
//   48   16  option bytes          112  3  last code address     120 1 F3h     128 16 code increment block
//                                  150  2  programming unit                    144  4  next code value
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "offline/board_image.h"
#include "offline/board_inputs.h"

namespace kvr::offline {

// What a board can give a chip of this model at most, in bytes; 0 for a family that boards do not know.
int modelLimit(const catalogue::McuRecord& record);

struct CodeFit {
  std::int64_t capacity = 0;  // the board's, held to the model's limit
  std::int64_t codeLast = 0;  // last address that the board will program
  std::string message;        // the words for the user when something has to stay out; else empty
};
CodeFit fitCode(const catalogue::McuRecord& record, std::int64_t capacity, const FileBuffer& file);

// Fills the header but for the increment blocks, which have to stand in it already, since the CRC covers them.
void fillBoardHeader(const BoardInputs& inputs, const FileBuffer& file, const CodeFit& fit,
                     std::span<std::uint8_t> header);

// Places one increment block with its next value.
void placeIncrement(bool dataField, std::span<const std::uint8_t> block, std::span<std::uint8_t> header);
void placeNextValue(bool dataField, std::span<const std::uint8_t> value, std::span<std::uint8_t> header);

}  // namespace kvr::offline
