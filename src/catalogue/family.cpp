#include "catalogue/family.h"

#include <algorithm>

#include "catalogue/family_rows.h"

namespace kvr::catalogue {

std::span<const FamilyTraits> allFamilies() {
  return rows::kFamilies;
}

const FamilyTraits& traitsOf(Family family) {
  return rows::kFamilies[rows::placeOf(family)];
}

std::optional<Family> familyOf(Stepping stepping) {
  const auto all = allFamilies();
  const auto hit = std::find_if(all.begin(), all.end(), [&](const FamilyTraits& traits) {
    return traits.letters.find(stepping.letter()) != std::string_view::npos;
  });
  if (hit == all.end()) return std::nullopt;
  return hit->family;
}

}  // namespace kvr::catalogue
