// The option bytes: what the panel asks for, and what the chip last said.
#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace kvr::options {

inline constexpr int kOptionBytes = 17;

// Byte i is option byte i of a chip, 0 to 15; which of them a family has, and which travel, is its protocol's business.
// Byte 16 never travels: in Elm, Fir and Gum it carries the choice `Clear_Unused_AP_*`, which only the programming
// reads.
using OptionBytes = std::array<std::uint8_t, kOptionBytes>;

// Choices that the engine asks by key: "1" chosen, "0" not, empty when the family has no such choice.
struct OptionWords {
  std::string doubleSpeed;    // `Double_speed_YES`
  std::string clearUnusedAp;  // `Clear_Unused_AP_YES`; never filled from reported bytes
  bool operator==(const OptionWords&) const = default;
};

struct OptionSet {
  OptionBytes wanted{};    // by `composeOptions`
  OptionBytes reported{};  // as read from a chip; entry 16, which no chip sends, is copied from `wanted`
  OptionWords wantedWords;
  OptionWords reportedWords;  // by `refreshChoices`
  bool operator==(const OptionSet&) const = default;
};

// The two registers of the internal oscillator (Pine, Quince), as measured for the wanted frequency.
struct RcTrim {
  std::uint8_t code = 0;  // coarse
  std::uint8_t fine = 0;
};

}  // namespace kvr::options
