#include "stations/window/tile_sign.h"

#include <QPainter>

#include "signs/sign_paint.h"

namespace kvr::tiles {
namespace {

constexpr qreal kBand = 0.3;         // of the height
constexpr qreal kWide = 1.6;         // from this width to height on, the shape is beside the word
constexpr qreal kBandIndent = 0.34;  // where the last verdict begins, of the width

}  // namespace

TileSign::TileSign() {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  setMinimumSize(60, 36);
}

void TileSign::show(signs::Sign sign, signs::Sign last) {
  if (sign == sign_ && last == last_) return;
  sign_ = sign;
  last_ = last;
  update();
}

void TileSign::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  QRectF area(rect());
  const bool band = signs::isVerdict(last_) && (sign_ == signs::Sign::Waiting || sign_ == signs::Sign::Ready);
  if (band) {
    const QRectF below(area.left(), area.bottom() - area.height() * kBand, area.width(), area.height() * kBand);
    area.setBottom(below.top() - 3);
    painter.setPen(palette().color(QPalette::WindowText));
    QFont face = font();
    face.setPixelSize(std::max(11, static_cast<int>(std::min(below.height() * 0.45, below.width() * 0.07))));
    painter.setFont(face);
    painter.drawText(below, static_cast<int>(Qt::AlignVCenter | Qt::AlignLeft), QStringLiteral("Last chip:"));
    signs::paintSign(painter, below.adjusted(below.width() * kBandIndent, 0, 0, 0), last_,
                     signs::Layout::ShapeBesideWord);
  }
  const bool wide = area.width() > area.height() * kWide;
  signs::paintSign(painter, area, sign_, wide ? signs::Layout::ShapeBesideWord : signs::Layout::ShapeAboveWord);
}

}  // namespace kvr::tiles
