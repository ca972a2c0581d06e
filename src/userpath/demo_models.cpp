#include "userpath/demo_models.h"

#include <algorithm>
#include <array>

namespace kvr::userpath {
namespace {

constexpr std::array kModels{
    DemoModel{0x0001, "Cedar-L10R", "F001"}, DemoModel{0x0002, "Cedar-L20R", "F002"},
    DemoModel{0x0003, "Cedar-L38R", "F004"}, DemoModel{0x0004, "Cedar-L40D", "F104"},
    DemoModel{0x0005, "Cedar-L80D", "F108"}, DemoModel{0x0006, "Cedar-LF8D", "F110"},
    DemoModel{0x4001, "Cedar-H10R", "F001"}, DemoModel{0x4002, "Cedar-H20R", "F002"},
    DemoModel{0x4003, "Cedar-H38R", "F004"}, DemoModel{0x4004, "Cedar-H40D", "F104"},
    DemoModel{0x4005, "Cedar-H80D", "F108"}, DemoModel{0x4006, "Cedar-HF8D", "F110"},
    DemoModel{0x0051, "Cedar-B10R", "F001"}, DemoModel{0x0052, "Cedar-B20R", "F002"},
    DemoModel{0x0053, "Cedar-B38R", "F004"}, DemoModel{0x0054, "Cedar-B40D", "F104"},
    DemoModel{0x0058, "Cedar-B80D", "F108"}, DemoModel{0x0516, "Cedar-BF8D", "F110"},
};

}  // namespace

DemoModel demoModelOf(std::uint16_t number) {
  const auto found = std::ranges::find(kModels, number, &DemoModel::number);
  return found == kModels.end() ? DemoModel{number, {}, {}} : *found;
}

}  // namespace kvr::userpath
