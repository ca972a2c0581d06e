#include "images/hex_pane_view.h"

namespace kvr::images {

std::string HexPane::property(std::string_view name) const {
  return name == "Text" ? model.pageText() : std::string();
}

void HexPane::userKey(HexKey key, bool selecting) {
  if (enabled() && onKey) onKey(key, selecting);
}

void HexPane::userType(char32_t character) {
  if (enabled() && onType) onType(character);
}

void HexPane::userClick(HexSpot spot, bool selecting) {
  if (enabled() && onClick) onClick(spot, selecting);
}

void HexPane::userUndo(bool again) {
  if (enabled() && onUndo) onUndo(again);
}

void HexPane::userCompare() {
  if (enabled() && onCompare) onCompare();
}

void HexPane::userFound() {
  if (onMoved) onMoved();
}

}  // namespace kvr::images
