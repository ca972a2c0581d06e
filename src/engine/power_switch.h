// The target's supply, switched by a modem line of the adapter, as many fixtures do it: off before the first contact
// with a chip, and on again when the call to it begins.
//
// As text, for files and command lines: "none", or "dtr" or "rts", then ":low" when the supply is on while the line is
// clear, then ":" and the milliseconds that it is off. "rts", "dtr:low", "rts:200", "dtr:low:1500".
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/event_loop.h"
#include "platform/serial_link.h"

namespace kvr::engine {

struct PowerSwitch {
  static constexpr platform::Millis kShortestOff{50}, kLongestOff{5000};

  std::optional<platform::ModemLine> line;  // none: the supply is switched by hand
  bool onWhenSet = true;                    // active high; otherwise the supply is on while the line is clear
  platform::Millis off{500};                // for so long, kShortestOff..kLongestOff

  bool operator==(const PowerSwitch&) const = default;
};

// Nothing: the text is no such switch, or its time is outside the limits.
std::optional<PowerSwitch> powerSwitchOf(std::string_view text);
std::string textOf(const PowerSwitch& power);
std::string nameOf(platform::ModemLine line);  // "DTR"
platform::Millis nearestOffTime(long long milliseconds);

// The line at the level of a supply that is on, or off. Nothing happens without a line.
void keepSupply(platform::SerialLink& link, const PowerSwitch& power, bool on);

// Switches the supply off when it is made, and on again when it goes at the latest: a run that ends early leaves its
// target powered.
class SupplyOff {
 public:
  SupplyOff(platform::SerialLink& link, const PowerSwitch& power) : link_(link), power_(power) {
    keepSupply(link_, power_, false);
  }
  ~SupplyOff() { keepSupply(link_, power_, true); }
  SupplyOff(const SupplyOff&) = delete;
  SupplyOff& operator=(const SupplyOff&) = delete;

 private:
  platform::SerialLink& link_;
  const PowerSwitch& power_;
};

}  // namespace kvr::engine
