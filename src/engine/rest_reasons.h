// Why the protocol prescribes each of the rests that an outcome tells.
#pragma once

#include <string_view>

namespace kvr::engine::why {

inline constexpr std::string_view kSupplyOff = "the target's supply is off";
inline constexpr std::string_view kNoAnswer = "the chip has not answered";
inline constexpr std::string_view kRateUnderTest = "the chip turns to the rate under test";
inline constexpr std::string_view kNewRate = "the chip turns to the new rate";
inline constexpr std::string_view kBeforeData = "the chip gets ready for data";
inline constexpr std::string_view kBeforeOptions = "the chip gets ready for options";
inline constexpr std::string_view kGoodbye = "the chip leaves its boot firmware";
inline constexpr std::string_view kBoardWakes = "the board wakes up";
inline constexpr std::string_view kLineAtRest = "the board sees the line at rest";
inline constexpr std::string_view kLateAnswer = "an answer may come late";

}  // namespace kvr::engine::why
