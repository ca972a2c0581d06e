// A line of text that is cut to its room, with the whole of it as its tip.
#pragma once

#include <QWidget>

namespace kvr::tiles {

class ElidedLabel : public QWidget {
 public:
  explicit ElidedLabel(Qt::Alignment alignment = Qt::AlignLeft);
  void setText(const QString& text);
  const QString& text() const { return text_; }
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QString text_;
  Qt::Alignment alignment_;
};

}  // namespace kvr::tiles
