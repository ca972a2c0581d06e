// The model that the user works with, and what follows from it. Applying a model replaces it whole; every other room
// reads it.
#pragma once

#include <string>

#include "catalogue/mcu_record.h"

namespace kvr::catalogue {

struct SelectedModel {
  McuRecord record;     // an empty name: no model is selected yet
  IspRange range;       // what `LabISP_reange` shows
  int blockSize = 128;  // programming unit, bytes

  std::string name() const { return std::string(record.name); }
  const FamilyTraits& traits() const { return traitsOf(record); }
};

SelectedModel describeModel(const McuRecord& record);

}  // namespace kvr::catalogue
