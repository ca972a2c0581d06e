#include "engine/power_switch.h"

#include <algorithm>
#include <charconv>

#include "platform/text.h"

namespace kvr::engine {
namespace {

using platform::ModemLine;

// The text up to the next colon, which goes with it.
std::string_view cutPart(std::string_view& text) {
  const std::size_t end = std::min(text.find(':'), text.size());
  const std::string_view part = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  return part;
}

std::optional<platform::Millis> offTimeOf(std::string_view digits) {
  int count = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), count);
  if (error != std::errc() || end != digits.data() + digits.size()) return std::nullopt;
  const platform::Millis time(count);
  if (time < PowerSwitch::kShortestOff || time > PowerSwitch::kLongestOff) return std::nullopt;
  return time;
}

}  // namespace

std::optional<PowerSwitch> powerSwitchOf(std::string_view given) {
  const std::string upper = platform::upper(given);
  std::string_view text = upper;
  if (text == "NONE") return PowerSwitch{};
  if (text.ends_with(':')) return std::nullopt;
  PowerSwitch power;
  const std::string_view line = cutPart(text);
  if (line == "DTR")
    power.line = ModemLine::Dtr;
  else if (line == "RTS")
    power.line = ModemLine::Rts;
  else
    return std::nullopt;
  if (text == "LOW" || text.starts_with("LOW:")) {
    power.onWhenSet = false;
    cutPart(text);
  }
  if (text.empty()) return power;
  const auto off = offTimeOf(text);
  if (!off) return std::nullopt;
  power.off = *off;
  return power;
}

std::string textOf(const PowerSwitch& power) {
  if (!power.line) return "none";
  const std::string line = *power.line == ModemLine::Dtr ? "dtr" : "rts";
  return line + (power.onWhenSet ? ":" : ":low:") + std::to_string(power.off.count());
}

std::string nameOf(ModemLine line) {
  return line == ModemLine::Dtr ? "DTR" : "RTS";
}

platform::Millis nearestOffTime(long long milliseconds) {
  return std::clamp(platform::Millis(milliseconds), PowerSwitch::kShortestOff, PowerSwitch::kLongestOff);
}

void keepSupply(platform::SerialLink& link, const PowerSwitch& power, bool on) {
  if (power.line) link.keepLine(*power.line, on == power.onWhenSet);
}

}  // namespace kvr::engine
