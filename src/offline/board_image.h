// The 64 KB memory image of an off-line board, addressed as the board addresses it. Numbers are big-endian, CRCs low
// byte first.
//
//   2000h  8192   code from 44032 on, for boards without a second memory bank
//   4000h  44032  code from 0 on
//   EC00h  256    header (see board_header.h)
//   ED00h  256    download limit, units of 2048; ED40h: 32 bytes FFh when a serial value is on
//   EE00h  256    download limit, units of 1
//   F000h  1024   CRC table, one entry for each 128 bytes of code
//   F400h  512    FFh when a serial value is on; the board keeps its count here
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "offline/file_buffer.h"

namespace kvr::offline {

inline constexpr int kMainCodeAt = 0x4000;
inline constexpr int kMainCodeSize = 44032;
inline constexpr int kSecondCodeAt = 0x2000;
inline constexpr int kSecondCodeSize = 8192;
inline constexpr int kHeaderAt = 0xEC00;
inline constexpr int kHeaderSize = 256;
inline constexpr int kLimitHighAt = 0xED00;
inline constexpr int kLimitLowAt = 0xEE00;
inline constexpr int kLimitUnit = 2048;
inline constexpr int kCrcTableAt = 0xF000;
inline constexpr std::size_t kCrcBlock = 128;
inline constexpr std::size_t kCrcBlocks = 512;

class BoardImage {
 public:
  BoardImage() : bytes_(0x10001) {}

  std::span<const std::uint8_t> bytes() const { return bytes_; }
  std::span<std::uint8_t> header() { return area(kHeaderAt, kHeaderSize); }
  std::span<std::uint8_t> area(std::size_t first, std::size_t count) { return std::span(bytes_).subspan(first, count); }

  // Empties everything that a build fills, 2000h to F3FFh.
  void clear();

  // Stores how many chips the board may program (1..1000000): one-bits to count off, in units of 2048 and of 1.
  void writeLimit(std::int64_t limit);

  // Room for the board to count a serial value on.
  void openIncrementAreas();

  // The CRC of each 128 bytes of code.
  void writeCrcTable(const FileBuffer& file);

  // The code, at both of its places.
  void placeCode(const FileBuffer& file);

  // The code from 44032 on, at the place of the main code: what goes into a second memory bank.
  void placeSecondBank(const FileBuffer& file);

 private:
  std::vector<std::uint8_t> bytes_;
};

}  // namespace kvr::offline
