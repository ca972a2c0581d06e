// The models that tests go through.
#pragma once

#include <set>
#include <string>
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

// Of those the first one of each kind; `kindOf` says as a text what kind a model is of, "" when it is of none.
template <class KindOf>
std::vector<const catalogue::McuRecord*> oneOfEach(KindOf kindOf) {
  std::set<std::string> kinds{""};
  auto models = everyModel();
  std::erase_if(models,
                [&](const catalogue::McuRecord* row) { return !kinds.insert(std::string(kindOf(*row))).second; });
  return models;
}

}  // namespace kvr::support
