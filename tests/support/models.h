// The models that tests go through.
#pragma once

#include <map>
#include <set>
#include <string>
#include <utility>
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

// Of each family those that fit with the least and with the most code, family by family.
template <class Fits>
std::vector<const catalogue::McuRecord*> endsOfEachFamily(Fits fits) {
  std::map<catalogue::Family, std::pair<const catalogue::McuRecord*, const catalogue::McuRecord*>> ends;
  for (const auto* row : everyModel()) {
    if (!fits(*row)) continue;
    auto& [least, most] = ends.try_emplace(row->family, row, row).first->second;
    if (row->apEnd < least->apEnd) least = row;
    if (row->apEnd > most->apEnd) most = row;
  }
  std::vector<const catalogue::McuRecord*> models;
  for (const auto& [family, pair] : ends) {
    models.push_back(pair.first);
    if (pair.second != pair.first) models.push_back(pair.second);
  }
  return models;
}

}  // namespace kvr::support
