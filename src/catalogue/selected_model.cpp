#include "catalogue/selected_model.h"

namespace kvr::catalogue {

SelectedModel describeModel(const McuRecord& record) {
  return {.record = record, .range = computeIspRange(record), .blockSize = traitsOf(record).blockSize};
}

}  // namespace kvr::catalogue
