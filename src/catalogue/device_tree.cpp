#include "catalogue/device_tree.h"

namespace kvr::catalogue {
namespace {

struct Series {
  int family;
  std::string_view key;
  std::string_view label;
};

constexpr Series kSeriesInOrder[] = {
    {8, "FamilyJuniper", "Juniper series"}, {9, "FamilyKauri", "Kauri series"},
    {10, "FamilyLarch", "Larch series"},    {15, "FamilyPine", "Pine series"},
    {16, "FamilyQuince", "Quince series"},  {7, "FamilyIvy", "Ivy series"},
    {6, "FamilyHazel", "Hazel series"},     {5, "FamilyGum", "Gum series"},
    {12, "FamilyNutmeg", "Nutmeg series"},  {13, "FamilyOak", "Oak series"},
};

}  // namespace

std::vector<SeriesNode> deviceTree() {
  std::vector<SeriesNode> tree;
  for (const Series& series : kSeriesInOrder) {
    SeriesNode node{series.family, series.key, series.label, {}};
    for (const McuRecord& record : allRows()) {
      if (record.family == series.family && record.listed) node.models.push_back(&record);
    }
    tree.push_back(std::move(node));
  }
  return tree;
}

}  // namespace kvr::catalogue
