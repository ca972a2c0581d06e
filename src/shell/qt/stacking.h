// Parts side by side, or one below the other where the place is too narrow for both.
#pragma once

#include <QBoxLayout>
#include <QSplitter>
#include <algorithm>
#include <functional>

namespace kvr::window {

class Stacking : public QWidget {
 public:
  Stacking(QWidget* first, QWidget* second) : line_(new QBoxLayout(QBoxLayout::LeftToRight, this)) {
    line_->setContentsMargins(0, 0, 0, 0);
    for (QWidget* part : {first, second}) line_->addWidget(part);
  }
  QSize minimumSizeHint() const override {
    int width = 0;
    for (int i = 0; i < line_->count(); ++i) width = std::max(width, line_->itemAt(i)->minimumSize().width());
    return {width, line_->minimumSize().height()};
  }

 protected:
  void resizeEvent(QResizeEvent* event) override {
    int needed = line_->spacing();
    for (int i = 0; i < line_->count(); ++i) needed += line_->itemAt(i)->minimumSize().width();
    line_->setDirection(width() < needed ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
    QWidget::resizeEvent(event);
  }

 private:
  QBoxLayout* line_;
};

// The same with an edge that can be dragged.
class StackingSplitter : public QSplitter {
 public:
  // Side by side from this many average characters on.
  explicit StackingSplitter(int characters) : QSplitter(Qt::Horizontal), characters_(characters) {}
  std::function<void(bool stacked)> turned;

  QSize minimumSizeHint() const override {
    int width = 0;
    for (int i = 0; i < count(); ++i) width = std::max(width, widget(i)->minimumSizeHint().width());
    return {width, QSplitter::minimumSizeHint().height()};
  }

 protected:
  void resizeEvent(QResizeEvent* event) override {
    int needed = handleWidth();
    for (int i = 0; i < count(); ++i) needed += widget(i)->minimumSizeHint().width();
    needed = std::max(needed, fontMetrics().averageCharWidth() * characters_);
    const auto wanted = width() < needed ? Qt::Vertical : Qt::Horizontal;
    if (wanted != orientation()) {
      setOrientation(wanted);
      if (turned) turned(wanted == Qt::Vertical);
    }
    QSplitter::resizeEvent(event);
  }

 private:
  int characters_;
};

}  // namespace kvr::window
