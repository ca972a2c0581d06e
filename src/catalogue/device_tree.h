// The contents of the model picker: series in the order people look for them, their models below.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "catalogue/mcu_record.h"

namespace kvr::catalogue {

// All series keys begin with this; no model name does. A picked key that begins with it opens or closes a series.
inline constexpr std::string_view kSeriesKeyPrefix = "Family";

struct SeriesNode {
  Family family = Family::Alder;
  std::string key;                       // such as "FamilyIvy"
  std::string label;                     // such as "Ivy series"
  std::vector<const McuRecord*> models;  // the listed rows in table order; a model's name is both its key and its text
};

// The whole tree, series by series. Families out of production have no node: a project file or a chip can still name
// them.
std::vector<SeriesNode> deviceTree();

}  // namespace kvr::catalogue
