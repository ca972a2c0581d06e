#include "images/auto_increment.h"

#include <algorithm>
#include <cstdlib>

#include "platform/text.h"

namespace kvr::images {
namespace {

constexpr double kLargestNext = 2147483647.0;
constexpr int kLargestStep = 32767;
const std::string kZeros(15, '0');

std::string lastOf(const std::string& text, std::size_t count) {
  return text.substr(text.size() - std::min(text.size(), count));
}

bool onlyDigits(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

int whole16(const std::string& text) {
  return std::clamp(platform::wholeOf(text), -32768, 32767);
}

// The digits of the field's bytes, two a byte, as far as there are any; or what is wrong.
struct FieldDigits {
  std::string digits;
  std::string fault;
};

FieldDigits hexDigits(std::uint32_t number, std::size_t bytes) {
  if (platform::hexText(number).size() > 2 * bytes) return {{}, "The number of bytes is too small."};
  if (bytes > 4) return {{}, "If choose HEX, the number of bytes must be less than or equal to 4."};
  return {"00000000" + platform::hexText(number), {}};
}

FieldDigits decimalDigits(const AutoIncrement& record, double number, std::size_t bytes) {
  const std::size_t width = record.radix == Radix::Ascii ? bytes : 2 * bytes;
  const std::string padded = lastOf(kZeros + record.next, width);
  if (platform::valueOf(padded) != number) return {{}, "The number of bytes is too small."};
  if (bytes > 10) return {{}, "The number of Bytes must be less than or equal to 10."};
  if (record.radix == Radix::Bcd) return {padded, {}};
  std::string codes;
  for (const char c : record.next) codes += platform::hexText(static_cast<unsigned char>(c), 2);
  return {codes, {}};
}

}  // namespace

std::int32_t autoAddress(std::string_view text) {
  return static_cast<std::int32_t>(platform::hexOf(platform::padLeft(platform::trim(text), 5)));
}

void takeTexts(AutoIncrement& record, const CounterTexts& texts) {
  record.address = autoAddress(texts[0]);
  record.bytes = whole16(texts[1]);  // a length that is cut here fits no memory anyway
  record.next = platform::trim(texts[2]);
  record.step = platform::wholeOf(texts[3]);
}

std::string checkAutoRange(const AutoIncrement& record, const catalogue::McuRecord& model) {
  const bool tooLow = record.address + 1 - record.bytes < 0;
  if (std::abs(std::int64_t{record.step}) > kLargestStep) return "The increase must be between -32767 and 32767.";
  if (record.kind == ImageKind::Data) {
    if (record.address > model.dataEnd - model.dataStart)
      return "The address of auto increament in the data buffer is too big.";
    if (tooLow)
      return "The address of auto increament in the EEPROM file buffer is too small or the number of bytes is too big.";
    return {};
  }
  if (catalogue::hasDataFile(model)) {
    if (record.address > model.apEnd) return "The address of auto increament in the data buffer is too big.";
  } else if (record.address > (traitsOf(model).dataMemory ? model.dataEnd : model.apEnd)) {
    return "The address of auto increament in the buffer is too big.";
  }
  if (tooLow)
    return "The address of auto increament in the code buffer is too small or the number of bytes is too big.";
  return {};
}

AutoValue autoValue(const AutoIncrement& record) {
  if (!onlyDigits(record.next)) return {{}, "The format of Next Value must be 10 base."};
  const double number = platform::valueOf(record.next);
  if (number > kLargestNext) return {{}, "The Next Value must be less than 2147483648."};
  // A field without a byte would let chips out without their number.
  if (record.bytes < 1) return {{}, "The number of bytes is too small."};
  const auto bytes = static_cast<std::size_t>(record.bytes);
  const FieldDigits field = record.radix == Radix::Hex ? hexDigits(static_cast<std::uint32_t>(number), bytes)
                                                       : decimalDigits(record, number, bytes);
  if (!field.fault.empty()) return {{}, field.fault};

  AutoValue value;
  value.bytes.assign(bytes, 0);
  std::string rest = field.digits;
  for (std::size_t i = bytes; i-- > 0 && !rest.empty();) {
    const std::string pair = lastOf(rest, 2);
    value.bytes[i] = static_cast<std::uint8_t>(platform::hexOf(pair));
    rest.erase(rest.size() - pair.size());
  }
  return value;
}

std::string advancedNext(const AutoIncrement& record) {
  const std::string sum = platform::numberText(platform::valueOf(record.next) + record.step);
  const std::int64_t width = record.radix == Radix::Hex   ? platform::floorOf(record.bytes * 241 / 100.0 + 1.5)
                             : record.radix == Radix::Bcd ? 2 * record.bytes
                                                          : record.bytes;
  return lastOf(kZeros + sum, static_cast<std::size_t>(std::max<std::int64_t>(0, width)));
}

}  // namespace kvr::images
