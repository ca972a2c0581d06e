// Reading an Intel HEX file: from its bytes to a value that says what lies where and what is odd about it.
//
// Record addresses are 16 bits. There is no extended addressing: every record but the end record is taken as data,
// types 2 to 5 too, since no chip of the range has more than 64 KB. Records with a bad check sum are taken as well; who
// loads the file asks the user.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "images/image_buffer.h"

namespace kvr::images {

struct HexScan {
  FileLayer layer;                     // as long as the image
  std::int64_t sum = 0;                // of all data bytes, also of those above the limit
  std::int32_t maxAddr = 0;            // highest address of a data byte, also above the limit
  int records = 0;                     // lines that begin with ':'
  std::array<int, 256> ofType{};       // the same by record type
  int badSums = 0;                     // records whose check sum is wrong
  std::vector<std::string> badLines;   // the first three of them, printable
  bool endRecord = false;              // the file says where it ends; nothing after it was read
  std::int64_t extendedRecords = 0;    // records of type 2 to 5
  std::int64_t overlappingBytes = 0;   // data bytes that a later record wrote over
  std::vector<std::uint8_t> overlaps;  // not 0 where a later record wrote over a data byte; empty: nowhere
  std::int64_t droppedBytes = 0;       // at or above the limit
};

// `startOffset` is added to every address; bytes at or above `limit` are dropped; `size` is the image's length.
HexScan scanHex(std::span<const std::uint8_t> text, std::int32_t startOffset, std::int32_t limit, std::int32_t size);

}  // namespace kvr::images
