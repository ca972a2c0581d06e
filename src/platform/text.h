// Texts and numbers as the controls, the files and the messages of this program use them.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace kvr::platform {

std::string trim(std::string_view text);   // blanks, tabs and line ends off both sides
std::string upper(std::string_view text);  // ASCII letters

// The number at the head of a text: leading blanks, sign, decimal digits, point, exponent, as far as they go; else 0.
double valueOf(std::string_view text);
// The same, truncated to a whole number and held to the 32-bit range.
int wholeOf(std::string_view text);
// The text has such a number, and nothing follows it.
bool isNumberText(std::string_view text);

// A value as a number text: at most 15 significant digits, no trailing zeros, no leading blank ("11.0592", "-3",
// "1E+20").
std::string numberText(double value);
// With so many decimals ("12.500"). The point is a point in every locale, as in all of these.
std::string fixedText(double value, int decimals);

// Unsigned hexadecimal at the head of a text, as far as digits go; 0 when there is none. At most 32 bits are kept.
std::uint32_t hexOf(std::string_view text);
// Upper-case hexadecimal with at least `digits` digits, zeros in front.
std::string hexText(std::uint32_t value, int digits = 1);
// The last `count` characters of the text with zeros in front: "4F" gives "004F" for 4.
std::string padLeft(std::string_view text, int count, char fill = '0');

// Minutes and seconds: "01:25" for 85. Seconds are not negative.
std::string minutesText(std::int64_t seconds);
// The text's own bytes; they live as long as it does.
std::span<const std::uint8_t> bytesOf(std::string_view text);

// To the nearest whole number, an exact half to the even one.
std::int64_t roundEven(double value);
// The largest whole number that is not above the value ("truncated", "integer part").
std::int64_t floorOf(double value);

}  // namespace kvr::platform
