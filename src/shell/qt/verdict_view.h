// The result of the chip in hand, to be read from two metres: a word, a shape and a colour, each enough by itself.
#pragma once

#include <QWidget>

#include "download/download_panel.h"

namespace kvr::window {

class VerdictView : public QWidget {
 public:
  explicit VerdictView(download::Verdict& verdict);
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;
  QString word() const;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  download::Verdict& verdict_;
  platform::Signal::Token token_;
};

}  // namespace kvr::window
