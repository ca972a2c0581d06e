// What assistive programs see of a hexadecimal view: a text of lines " 000010   12 34 ... " with a caret in it.
#pragma once

#include <QAccessible>

#include "images/hex_view_model.h"

namespace kvr::window {

class HexView;
QAccessibleInterface* accessibleHexView(HexView& view);

// Where a digit is in the view's whole text, in which every line takes kHexLineLength characters.
inline constexpr int kHexLineLength = 59;
int textOffset(const images::HexViewModel& model, images::HexSpot spot);

}  // namespace kvr::window
