#include "stations/window/tile_sign.h"

#include <QPainter>

#include "signs/sign_paint.h"

namespace kvr::tiles {
namespace {

constexpr qreal kBand = 0.3;                           // of the height
constexpr qreal kWide = 1.6;                           // from this width to height on, the shape is beside the word
constexpr qreal kBandText = 0.06, kBandRemark = 0.08;  // of the width: the height of its letters
constexpr qreal kBandIndent = 0.34;                    // where the last verdict begins, of the width

}  // namespace

TileSign::TileSign() {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  setMinimumSize(60, 36);
}

void TileSign::show(signs::Sign sign, signs::Sign last, const QString& remark) {
  if (sign == sign_ && last == last_ && remark == remark_) return;
  sign_ = sign;
  last_ = last;
  remark_ = remark;
  update();
}

void TileSign::paintBand(QPainter& painter, const QRectF& band) {
  QFont face = font();
  face.setBold(!remark_.isEmpty());
  const qreal wide = remark_.isEmpty() ? kBandText : kBandRemark;
  face.setPixelSize(std::max(11, static_cast<int>(std::min(band.height() * 0.6, band.width() * wide))));
  painter.setPen(palette().color(QPalette::WindowText));
  const int wanted = QFontMetrics(face).horizontalAdvance(remark_);
  if (wanted > band.width()) face.setPixelSize(std::max(9, static_cast<int>(face.pixelSize() * band.width() / wanted)));
  painter.setFont(face);
  if (!remark_.isEmpty()) return painter.drawText(band, static_cast<int>(Qt::AlignCenter), remark_);
  painter.drawText(band, static_cast<int>(Qt::AlignVCenter | Qt::AlignLeft), QStringLiteral("Last chip:"));
  signs::paintSign(painter, band.adjusted(band.width() * kBandIndent, 0, 0, 0), last_, signs::Layout::ShapeBesideWord);
}

void TileSign::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  QRectF area(rect());
  const bool awaits = sign_ < signs::Sign::Pass && sign_ != signs::Sign::Working;
  if (!remark_.isEmpty() || (awaits && signs::isVerdict(last_))) {
    const QRectF band(area.left(), area.bottom() - area.height() * kBand, area.width(), area.height() * kBand);
    area.setBottom(band.top() - 3);
    paintBand(painter, band);
  }
  const bool wide = area.width() > area.height() * kWide;
  signs::paintSign(painter, area, sign_, wide ? signs::Layout::ShapeBesideWord : signs::Layout::ShapeAboveWord);
}

}  // namespace kvr::tiles
