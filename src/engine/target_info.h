// What a handshake has learnt of the connected chip.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "catalogue/mcu_record.h"

namespace kvr::engine {

// Bytes of the timer reload value at the negotiated baud: for the chip's present speed mode, and for the other one.
struct ReloadBytes {
  std::uint8_t high = 0;
  std::uint8_t low = 0;
  bool operator==(const ReloadBytes&) const = default;
};

struct TargetInfo {
  catalogue::FirmwareVersion firmware;
  catalogue::Stepping stepping;             // the firmware's family letter
  std::string modelCodeHigh, modelCodeLow;  // two hexadecimal digits each; a code of one byte has no low part
  bool modelCodeKnown = false;              // the status frame was long enough to hold the code
  std::string extendedCodeText;             // four digits; empty when absent or zero
  std::string targetModelName;              // empty: no row has the code
  catalogue::McuRecord targetRecord;        // its row; of an unknown model the selected one, without a name
  catalogue::Family family{};               // of the chip, by its letter when the model is unknown
  float targetClockHz = 0;
  bool doubleSpeed = false;
  int clockDoubled = 0;   // above 0: the chip doubles its clock; only the report shows it
  int reservedBytes = 0;  // top of flash that the firmware keeps, and whether the chip has told it
  bool reservedKnown = false;
  std::array<std::uint8_t, 7> statusTail{};  // with a measured oscillator: seven bytes for the chip
  bool fixedBaudLink = false;                // no baud negotiation
  ReloadBytes reloadNormal, reloadOther;

  std::string modelCode() const { return modelCodeHigh + modelCodeLow; }
  bool tellsAllOptions() const { return traitsOf(family).allOptions(); }
  // Of the model that the code names; an unknown model has none.
  catalogue::ModelQuirks quirks() const {
    return targetModelName.empty() ? catalogue::ModelQuirks{} : targetRecord.quirks;
  }
};

}  // namespace kvr::engine
