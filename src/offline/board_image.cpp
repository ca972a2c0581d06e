#include "offline/board_image.h"

#include <algorithm>

#include "engine/board_crc.h"

namespace kvr::offline {
namespace {

constexpr int kClearedFrom = 0x2000;
constexpr int kClearedTo = 0xF3FF;
constexpr int kIncrementMarkAt = 0xED40;
constexpr int kIncrementMarkSize = 32;
constexpr int kIncrementCountAt = 0xF400;
constexpr int kIncrementCountSize = 512;
constexpr int kSecondBankSize = 19456;

// `count` one-bits, lowest bit of the first byte first.
void writeOnes(std::span<std::uint8_t> area, std::int64_t count) {
  const auto whole = static_cast<std::size_t>(count / 8);
  std::ranges::fill(area.first(whole), std::uint8_t{0xFF});
  if (count % 8 != 0) area[whole] = static_cast<std::uint8_t>((1 << (count % 8)) - 1);
}

}  // namespace

void BoardImage::clear() {
  std::ranges::fill(area(kClearedFrom, kClearedTo - kClearedFrom + 1), std::uint8_t{0});
}

void BoardImage::writeLimit(std::int64_t limit) {
  writeOnes(area(kLimitHighAt, 256), limit / kLimitUnit);
  writeOnes(area(kLimitLowAt, 256), limit % kLimitUnit);
}

void BoardImage::openIncrementAreas() {
  std::ranges::fill(area(kIncrementMarkAt, kIncrementMarkSize), std::uint8_t{0xFF});
  std::ranges::fill(area(kIncrementCountAt, kIncrementCountSize), std::uint8_t{0xFF});
}

void BoardImage::writeCrcTable(const FileBuffer& file) {
  const auto table = area(kCrcTableAt, 2 * kCrcBlocks);
  for (std::size_t k = 0; k < kCrcBlocks; ++k) {
    const std::uint16_t crc = engine::boardCrc(std::span(file.bytes).subspan(k * kCrcBlock, kCrcBlock));
    table[2 * k] = static_cast<std::uint8_t>(crc);
    table[2 * k + 1] = static_cast<std::uint8_t>(crc >> 8);
  }
}

void BoardImage::placeCode(const FileBuffer& file) {
  const std::span code(file.bytes);
  std::ranges::copy(code.first(kMainCodeSize), area(kMainCodeAt, kMainCodeSize).begin());
  std::ranges::copy(code.subspan(kMainCodeSize, kSecondCodeSize), area(kSecondCodeAt, kSecondCodeSize).begin());
}

void BoardImage::placeSecondBank(const FileBuffer& file) {
  std::ranges::copy(std::span(file.bytes).subspan(kMainCodeSize, kSecondBankSize),
                    area(kMainCodeAt, kSecondBankSize).begin());
}

}  // namespace kvr::offline
