#include "shell/qt/recent_button.h"

#include "shell/qt/choice_button.h"

namespace kvr::window {

QWidget* withRecent(const Maker& maker, QPushButton* button, platform::Button& control, RecentMenu recent) {
  const auto list = [files = std::move(recent.list)] {
    std::vector<MenuChoice> choices;
    for (const images::RecentFile& file : files())
      choices.push_back({file.path, !file.gone, file.gone ? QStringLiteral("  (not there)") : QString()});
    return choices;
  };
  return withChoices(
      maker, button, control,
      {.name = recent.name, .none = QStringLiteral("None yet"), .list = list, .take = std::move(recent.open)});
}

}  // namespace kvr::window
