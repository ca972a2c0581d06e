// What sets the families apart in the conversation, under names that say so.
#pragma once

#include <string_view>

#include "catalogue/mcu_record.h"

namespace kvr::engine {

// Cedar, Maple, Nutmeg, Oak: one option byte, sent with the timer reload values.
inline bool isCedarLike(int family) {
  return family == 2 || catalogue::isLateFamily(family);
}
// Families whose baud divider is the plain 16-bit timer; all later ones name a divider mode.
inline bool usesTimerReload(int family) {
  return family <= 2 || catalogue::isLateFamily(family);
}
// Pine, Quince: run from an internal oscillator that is measured and trimmed.
inline bool hasTrimmedOscillator(int family) {
  return family == 15 || family == 16;
}
// Families whose option bytes travel in the long layout (status and option frames hold bytes 0 to 15 in order).
inline bool isLaterOptionFamily(int family) {
  return family >= 7 && !catalogue::isLateFamily(family);
}

// Rowan's data image has no way into the chip.
inline bool programsData(const catalogue::McuRecord& record) {
  return record.family != 18;
}

// The family that a stepping letter stands for; -1 for letters outside the range.
inline int familyOfLetter(std::string_view letter) {
  constexpr std::string_view kLetters = "ABCDEFGHIJKLMNO QR";
  if (letter.size() != 1) return -1;
  switch (letter[0]) {
    case 'A':
      return 0;
    case 'B':
      return 1;
    case 'C':
      return 2;
    case 'D':
      return 3;
    case 'E':
    case 'F':
      return 4;
    case 'Q':
      return 15;
    case 'R':
      return 16;
    case 'S':
      return 17;
    case 'Z':
      return 18;
    default:
      break;
  }
  const auto place = kLetters.find(letter[0]);
  return place == std::string_view::npos || letter[0] == ' ' ? -1 : static_cast<int>(place) - 1;
}

}  // namespace kvr::engine
