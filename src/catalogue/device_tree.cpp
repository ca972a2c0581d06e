#include "catalogue/device_tree.h"

namespace kvr::catalogue {
namespace {

constexpr Family kSeriesInOrder[] = {Family::Juniper, Family::Kauri, Family::Larch, Family::Pine,   Family::Quince,
                                     Family::Ivy,     Family::Hazel, Family::Gum,   Family::Nutmeg, Family::Oak};

}  // namespace

std::vector<SeriesNode> deviceTree() {
  std::vector<SeriesNode> tree;
  for (const Family family : kSeriesInOrder) {
    const std::string name(traitsOf(family).name);
    SeriesNode node{family, std::string(kSeriesKeyPrefix) + name, name + " series", {}};
    for (const McuRecord& record : allRows())
      if (record.family == family && record.listed) node.models.push_back(&record);
    tree.push_back(std::move(node));
  }
  return tree;
}

}  // namespace kvr::catalogue
