// The models that tests go through.
#pragma once

#include <vector>

#include "catalogue/mcu_record.h"

namespace kvr::support {

// Each model once: of rows with the same name the first one counts.
inline std::vector<const catalogue::McuRecord*> everyModel() {
  std::vector<const catalogue::McuRecord*> models;
  for (const catalogue::McuRecord& row : catalogue::allRows())
    if (catalogue::findByName(row.name) == &row) models.push_back(&row);
  return models;
}

}  // namespace kvr::support
