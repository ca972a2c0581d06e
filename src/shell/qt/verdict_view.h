// The result of the chip in hand, to be read from two metres: a word, a shape and a colour, each enough by itself.
#pragma once

#include <QWidget>

#include "download/download_panel.h"
#include "platform/event_loop.h"

namespace kvr::window {

class VerdictView : public QWidget {
 public:
  // A click on it presses `lastRun`, when that takes input.
  VerdictView(platform::EventLoop& loop, download::Verdict& verdict, platform::Button& lastRun);
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;
  QString word() const;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  void followButton();
  platform::EventLoop& loop_;
  download::Verdict& verdict_;
  platform::Button& lastRun_;
  platform::Signal::Token token_;
  platform::Signal::Token buttonToken_;
};

}  // namespace kvr::window
