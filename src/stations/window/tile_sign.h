// The sign of a station, large; while the next chip is awaited, a band below it keeps the verdict of the last one.
#pragma once

#include <QWidget>

#include "signs/sign.h"

namespace kvr::tiles {

class TileSign : public QWidget {
 public:
  TileSign();
  void show(signs::Sign sign, signs::Sign last);
  signs::Sign sign() const { return sign_; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  signs::Sign sign_ = signs::Sign::Ready;
  signs::Sign last_ = signs::Sign::Ready;
};

}  // namespace kvr::tiles
