#include "offline/increment_blocks.h"

#include <algorithm>

#include "offline/byte_fields.h"
#include "platform/text.h"

namespace kvr::offline {
namespace {

constexpr int kPage = 128;
constexpr double kLargestValue = 2147483648.0;
constexpr double kExact = 9007199254740992.0;  // whole numbers up to here are exact

std::int64_t nextPage(std::int64_t address) {
  const std::int64_t page = address >= 0 ? address / kPage : (address - kPage + 1) / kPage;
  return (page + 1) * kPage;
}

}  // namespace

IncrementBlock makeIncrementBlock(const IncrementField& field, int base) {
  const std::int64_t start = field.last - field.length + 1;
  const std::int64_t boundary = nextPage(start);
  const bool split = field.last >= boundary;
  const std::int64_t run2 = split ? field.last - boundary + 1 : 0;

  IncrementBlock block;
  block.start = start + base;
  block.bytes[0] = field.enabled ? 1 : 0;
  putBig(block.bytes, 1, 3, block.start);
  putBig(block.bytes, 4, 1, field.length - run2);
  putBig(block.bytes, 5, 3, (split ? boundary : field.last) + base);
  putBig(block.bytes, 8, 1, run2);
  putBig(block.bytes, 9, 1, field.step);
  putBig(block.bytes, 10, 1, field.enabled ? field.radix : 0xFF);
  return block;
}

std::array<std::uint8_t, 4> nextValueBytes(const IncrementField& field) {
  std::array<std::uint8_t, 4> bytes{};
  putBig(bytes, 0, 4, static_cast<std::int64_t>(std::clamp(platform::valueOf(field.next), -kExact, kExact)));
  return bytes;
}

bool incrementOverflows(const IncrementField& field, std::int64_t limit) {
  // Steps and limits stay far below 2^53 in sum, where doubles are still exact.
  return platform::valueOf(field.next) + static_cast<double>(limit) * static_cast<double>(field.step) > kLargestValue;
}

std::string incrementOverflowText(bool dataField) {
  return "Auto increment + (increment * 'Number of MCU') too big( >2147483648 ), \n"
         "Please decrease the auto increment value, or decrease the increment value，\n" +
         std::string(dataField ? "or decrease the number of MCU." : "or decrease the limitation of the number of MCU.");
}

}  // namespace kvr::offline
