// The pages below a tab strip. A page is built when its tab is first shown, so that the window is up quickly.
#pragma once

#include <QStackedWidget>
#include <functional>
#include <map>
#include <string>

#include "platform/controls.h"

namespace kvr::window {

class PageStack : public QStackedWidget {
 public:
  using Builder = std::function<QWidget*()>;
  PageStack(platform::TabStrip& strip, std::map<std::string, Builder> builders);
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return {120, 60}; }

 private:
  void showSelected();
  platform::TabStrip& strip_;
  std::map<std::string, Builder> builders_;
  std::map<std::string, QWidget*> pages_;
  platform::Signal::Token token_;
};

}  // namespace kvr::window
