// The files that were opened last, behind the button that opens one.
#pragma once

#include "images/recent_files.h"
#include "shell/qt/maker.h"

namespace kvr::window {

struct RecentMenu {
  QString name;
  std::function<std::vector<images::RecentFile>()> list;
  std::function<bool(const std::string& path)> open;  // what it returns has been told by its room
};

// `button`, the widget of `control`, with a small button at its end that opens the menu; both take input together.
QWidget* withRecent(const Maker& maker, QPushButton* button, platform::Button& control, RecentMenu menu);

}  // namespace kvr::window
