// A small button at the end of a field that opens a menu of what the field could hold.
#pragma once

#include "shell/qt/maker.h"

namespace kvr::window {

struct MenuChoice {
  std::string value;
  bool usable = true;
  QString remark = {};  // after the value
};

struct ChoiceMenu {
  QString name;
  QString none;  // what the menu says when there is nothing to choose
  std::function<std::vector<MenuChoice>()> list;
  std::function<void(const std::string& value)> take;
};

// `field`, the widget of `control`, with the button; both take input together.
QWidget* withChoices(const Maker& maker, QWidget* field, platform::Control& control, ChoiceMenu menu);

}  // namespace kvr::window
