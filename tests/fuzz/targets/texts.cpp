// Numbers as someone types them.
#include <cmath>

#include "platform/text.h"
#include "tests/fuzz/targets.h"

namespace kvr::fuzz {

std::string faultOfNumber(const Bytes& input) {
  const std::string text = textOf(input);
  const double value = platform::valueOf(text);
  if (!std::isfinite(value)) return "a number without end";
  const int whole = platform::wholeOf(text);
  if (std::abs(value) < 2e9 && whole != static_cast<int>(value)) return "another whole number";
  const double again = platform::valueOf(platform::numberText(value));
  if (std::abs(again - value) > std::abs(value) * 1e-14) return "its text is another number";
  if (std::abs(value) < 1e15 && std::abs(static_cast<double>(platform::roundEven(value)) - value) > 0.5)
    return "rounded too far";
  const std::uint32_t hex = platform::hexOf(text);
  if (platform::hexOf(platform::hexText(hex)) != hex) return "its hexadecimal text is another number";
  return platform::trim(platform::trim(text)) == platform::trim(text) ? "" : "trimmed twice";
}

}  // namespace kvr::fuzz
