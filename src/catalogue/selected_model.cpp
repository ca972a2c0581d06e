#include "catalogue/selected_model.h"

namespace kvr::catalogue {

SelectedModel describeModel(const McuRecord& record) {
  const bool tiny = record.family == 15 || record.family == 16;
  const bool dual = tiny || record.family == 17;
  return {.record = record,
          .range = computeIspRange(record),
          .blockSize = blockSizeOf(record.family),
          .familyClass = familyClassOf(record.family),
          .dualClock = dual,
          .rcModelTiny = tiny,
          .rcTrimStep = tiny ? 1 : 0,
          .pulseSync = dual ? 4 : 0,
          .parityEvenNow = record.parityEven};
}

}  // namespace kvr::catalogue
