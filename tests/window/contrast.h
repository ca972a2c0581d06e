// How well one colour is told from another, from 1 (not at all) to 21: text asks for 4.5, the edge of a box for 3.
#pragma once

#include <QColor>
#include <algorithm>
#include <cmath>

namespace kvr::window {

inline double luminance(const QColor& colour) {
  const auto part = [](double v) { return v <= 0.03928 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4); };
  return 0.2126 * part(colour.redF()) + 0.7152 * part(colour.greenF()) + 0.0722 * part(colour.blueF());
}

inline double contrast(const QColor& a, const QColor& b) {
  const double ratio = (luminance(a) + 0.05) / (luminance(b) + 0.05);
  return std::max(ratio, 1 / ratio);
}

}  // namespace kvr::window
