// The model that the operator works with, and what follows from it. Applying a model (shell/apply_device) replaces it
// whole; every other room reads it.
#pragma once

#include <string>

#include "catalogue/mcu_record.h"

namespace kvr::catalogue {

struct SelectedModel {
  McuRecord record;          // an empty name: no model is selected yet
  IspRange range;            // what `LabISP_reange` shows
  int blockSize = 128;       // programming unit, bytes
  int familyClass = 0;       // see familyClassOf
  bool dualClock = false;    // families 15, 16, 17: the clock is read from the first four counts
  bool rcModelTiny = false;  // families 15, 16: the internal oscillator is measured and trimmed
  int rcTrimStep = 0;        // 1 in families 15, 16
  int pulseSync = 0;         // 4 in families 15, 16, 17: first contact by pulse sync
  bool parityEvenNow = false;

  std::string name() const { return std::string(record.name); }
};

SelectedModel describeModel(const McuRecord& record);

}  // namespace kvr::catalogue
