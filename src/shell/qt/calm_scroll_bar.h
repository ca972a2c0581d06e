// A scroll bar for a view whose text flows in without a pause: it is always right, but paints itself at most ten times
// a second. Painting it costs several times what painting the text beside it does.
#pragma once

#include <QScrollBar>
#include <QTimer>

namespace kvr::window {

class CalmScrollBar : public QScrollBar {
 public:
  explicit CalmScrollBar(QWidget* parent) : QScrollBar(Qt::Vertical, parent) {
    rest_.setSingleShot(true);
    rest_.setInterval(100);
    connect(&rest_, &QTimer::timeout, this, [this] { update(); });
  }

 protected:
  void sliderChange(SliderChange change) override {
    if (isSliderDown()) return QScrollBar::sliderChange(change);
    if (!rest_.isActive()) rest_.start();
  }

 private:
  QTimer rest_;
};

}  // namespace kvr::window
