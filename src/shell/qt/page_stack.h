// The pages below a tab strip. A page is built when it is first shown, so that the window is up quickly.
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
  // Folded, which it is at first, the stack is hidden.
  PageStack(platform::TabStrip& strip, std::map<std::string, Builder> builders);
  void fold(bool on);
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return {120, 60}; }

 private:
  void showSelected();
  platform::TabStrip& strip_;
  std::map<std::string, Builder> builders_;
  std::map<std::string, QWidget*> pages_;
  platform::Signal::Token token_;
  bool folded_ = true;
};

}  // namespace kvr::window
