// What a simulated chip is made of: its catalogue row, its firmware, its clock, its times and its faults.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "sim/device.h"
#include "sim/families.h"

namespace sim {

using OptionBytes = std::array<std::uint8_t, 16>;

// How long the chip takes over what it does. All of it is told in the chip's journal, so a test can work out the
// shortest time a download can take.
struct ChipTimes {
  Micros turnaround = 20;  // from the end of a command to the start of an answer that needs no work
  Micros programByte = 55;
  Micros eraseSector = 8 * kMillisecond;  // 512 bytes
  Micros writeOptions = 20 * kMillisecond;
  Micros testReply = 160 * kMillisecond;  // gives the host time to change its speed before the answer
  Micros changeReply = 130 * kMillisecond;
  Micros firstGenerationReply = 40 * kMillisecond;  // the same two for family 1, which is quicker
  Micros rcChangeReply = 30 * kMillisecond;         // families 15 and 16
  Micros frameGap = 30 * kMillisecond;              // a silence this long inside a frame makes the chip drop it
  Micros deaf = 0;                                  // after each answer
  Micros listen = 0;     // boot firmware gives up and starts the application; 0: waits without end
  Micros rcMeasure = 0;  // settling time of the oscillator at each measured point
};

// For hosts that run in real time: the answers around a change of rate leave them 300 ms to get there.
ChipTimes patientTimes();

struct BlockFailure {
  int block = -1;         // address / block size
  int times = 0;          // so many first frames of it fail
  bool silently = false;  // no answer at all rather than a wrong sum
};

// Faults of the chip itself, off unless set. See `setChipFault` for their names in text.
struct ChipFaults {
  bool dropsFinishReply = false;
  bool wrongFinishReply = false;
  bool silentErase = false;
  bool wrongEraseReply = false;
  bool wrongStageReply = false;  // to 0x50 of the second stage
  bool silentStage = false;
  int refusesBaudTests = 0;  // so many tests stay without an answer
  bool passesTestNotChange = false;
  std::vector<BlockFailure> failsBlocks;
  int diesAfterBlocks = -1;      // power is gone after so many whole blocks
  int answersOptionsWith81 = 0;  // so many times
  bool silentOptions = false;
  bool optionsDoNotStick = false;
  bool silentStatusRead = false;  // 0x50 that asks for the options stays without an answer
  bool wrongModelCode = false;
  bool oldFirmware = false;
  bool idReadFails = false;
  bool silentMeasure = false;  // 0x65
  bool wrongMeasureReply = false;
  bool emptyMeasureReply = false;  // a reply that holds no points
  bool cutMeasureReply = false;    // a reply that names more points than it holds
  bool silentRcBaud = false;       // the last frame of the handshake of families 15 and 16
};

// The internal oscillator of families 15 and 16; see rc_oscillator.h. Chips made with the same seed are alike.
struct RcSetting {
  std::uint64_t seed = 0;     // 0: the chip's own seed
  double spread = 0.08;       // the whole chip runs up to this much too slow or too fast
  double slopeSpread = 0.05;  // each band's slope differs up to this much from the typical one
  double gap = 0.0;  // share of a band's height that lies between it and the next, unreachable; negative: they overlap
  double noise = 0.00002;  // of one measurement, as a share
};

// A fixture that feeds the chip through one of the adapter's modem lines.
struct SupplySwitch {
  enum class By { hand, dtr, rts } by = By::hand;
  bool onWhenSet = true;
  Micros holdUp = 20 * kMillisecond;  // the fixture's capacitors feed the chip on for so long
  bool feeds(const ModemLines& lines) const {
    return by == By::hand || (by == By::dtr ? lines.dtr : lines.rts) == onWhenSet;
  }
};

struct ChipConfig {
  const McuRecord* row = nullptr;
  char letter = 0;                     // stepping letter; 0: the usual one of the row
  int firmware = 0;                    // version byte, 0x63 is 6.3; 0: the usual one of the family
  double clockHz = 11059200;           // what the core runs at (families 15, 16: ignored, the oscillator decides)
  std::uint64_t seed = 1;              // former contents of the flash, identity, noise
  bool shortStatus = false;            // first status frame without identity
  bool directStatus = false;           // pulse sync: the status frame comes at once, without the second step
  bool shortDataReplies = false;       // first generation: data replies without a sum
  std::optional<bool> startPair;       // asks the host to look for the start pair; unset: later session only
  bool dataSectorsErase = true;        // a data sector that was kept is erased when the first write to it comes
  bool bareReplies = false;            // answers without 46 B9, unless it asks the host to look for them
  bool clockDoubled = false;           // bit 5 of the status byte
  int reservedCode = 0;                // bits 1..0 of the status byte
  bool reportsAltCode = false;         // the row's second code
  int extendedCode = 0;                // at 55, 56 of the status frame
  std::optional<OptionBytes> options;  // as the chip came; unset: the factory's
  SupplySwitch supply;
  ChipTimes times;
  ChipFaults faults;
  RcSetting rc;
};

char usualLetter(const McuRecord& row);
int usualFirmware(const McuRecord& row);

// The configuration of an ordinary chip of this row.
ChipConfig configFor(const McuRecord& row, double clockHz = 11059200, std::uint64_t seed = 1);

// Turns on a fault by its name in ChipFaults, with a value where it takes one ("failsBlock" takes "block:times" or
// "block:times:silent"; shortStatus, directStatus, shortDataReplies are taken too). False: no such fault or a bad
// value.
[[nodiscard]] bool setChipFault(ChipConfig& config, std::string_view name, std::string_view value);

// All names that it knows, with the kind of value that each takes.
enum class FaultValue { none, count, block };
struct FaultName {
  std::string_view name;
  FaultValue value = FaultValue::none;
};
std::vector<FaultName> chipFaultNames();

}  // namespace sim
