// The sign of a station, large. A band below it keeps the verdict of the last chip while the next one is awaited, or
// says what a user has to see from afar.
#pragma once

#include <QPainter>
#include <QWidget>

#include "signs/sign.h"

namespace kvr::tiles {

class TileSign : public QWidget {
 public:
  TileSign();
  void show(signs::Sign sign, signs::Sign last, const QString& remark);
  signs::Sign sign() const { return sign_; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void paintBand(QPainter& painter, const QRectF& band);
  signs::Sign sign_ = signs::Sign::Ready;
  signs::Sign last_ = signs::Sign::Ready;
  QString remark_;
};

}  // namespace kvr::tiles
