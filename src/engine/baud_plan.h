// Which rates a chip's UART can make from its clock, and the bytes of the frames that ask for one. Pure values.
#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "engine/target_info.h"

namespace kvr::engine {

// The nominal rates that the search looks at, slowest first.
inline constexpr std::array<int, 12> kBaudRows = {1200,  2400,  4800,  9600,  11520, 12800,
                                                  14400, 19200, 28800, 38400, 57600, 115200};

struct BaudChoice {
  int row = 0;  // of kBaudRows
  int baud = 0;
  int mode = 0;     // divider mode byte; 0 with a plain timer
  int reload = -1;  // timer counts, 1..65535; -1: no rate can be made
  bool operator==(const BaudChoice&) const = default;
};

// The highest rate at or below row `fromRow` and `maxBaud` that comes within tolerance of its nominal value: 2.5 % both
// ways with a divider mode, -3.2 to 4.0 % with a plain timer. Nothing when there is none, also for a clock or a start
// row of 0 or less.
std::optional<BaudChoice> calculateBaud(const catalogue::FamilyTraits& traits, double clockHz, int fromRow,
                                        double maxBaud);

// The two parameter bytes of a choice. `reload` of -1 (nothing found) gives 0 and 1.
struct BaudParameters {
  std::uint8_t high = 0;
  std::uint8_t low = 0;
  bool operator==(const BaudParameters&) const = default;
};
BaudParameters baudParameters(const catalogue::FamilyTraits& traits, const BaudChoice& choice);

// The class byte that tells the chip how long its flash steps take in its own clocks.
int waitClass(const catalogue::FamilyTraits& traits, double clockHz, bool doubleSpeed);

enum class BaudFrame { Test, Change };

// How many steps the chip waits before it uses the new rate; the byte that goes out.
std::uint8_t settleCount(catalogue::BaudPace pace, int connectBaud, BaudFrame frame, double rate, double clockHz);
// What is sent in place of it on the fixed link.
std::uint8_t fixedLinkTime(double clockHz);

// What the host waits between sending the frame and changing its own speed, and then for the answer.
int switchDelayMs(catalogue::BaudPace pace, int connectBaud, BaudFrame frame);
int answerLimitMs(BaudFrame frame, double rate);

// Reload values for the present speed mode and the other one, as the option write needs them.
struct ReloadPair {
  ReloadBytes normal, other;
  bool operator==(const ReloadPair&) const = default;
};
ReloadPair reloadValues(BaudParameters parameters, bool doubleSpeed);

}  // namespace kvr::engine
