// A sign to be read from two metres: a word, a shape and a colour, each enough by itself.
#pragma once

#include <QColor>
#include <QPainter>

#include "signs/sign.h"

namespace kvr::signs {

struct SignColours {
  QColor back, fore;
};
SignColours coloursOf(Sign sign);

enum class Layout {
  ShapeAboveWord,   // for a sign about as high as wide
  ShapeBesideWord,  // for a wide one
};
void paintSign(QPainter& painter, const QRectF& area, Sign sign, Layout layout);

}  // namespace kvr::signs
