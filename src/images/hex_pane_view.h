// A view of an image in hexadecimal, as a control: the state of the view and the gestures that change it. A window
// draws it and posts the gestures; the virtual world reads the page as text and types into it.
#pragma once

#include <functional>
#include <string>

#include "images/hex_view_model.h"
#include "platform/controls.h"

namespace kvr::images {

class HexPane : public platform::Control {
 public:
  using Control::Control;
  std::string property(std::string_view name) const override;  // "Text": the page as lines of address and bytes

  HexViewModel model;  // set up by the image room; change it through the gestures below, or call `refresh` afterwards
  void refresh() { changed.emit(); }

  // Gestures of the user, only when enabled; the image room supplies what they do.
  void userKey(HexKey key, bool selecting = false);
  void userType(char32_t character);
  void userClick(HexSpot spot, bool selecting = false);
  void userUndo(bool again);  // the last edit is taken back, or done again
  void userCompare();         // asks for a second file
  void userFound();           // find, go to or a difference has moved the caret in the model
  bool offersUndo(bool again) const { return enabled() && undoOffered && undoOffered(again); }
  std::function<void(bool again)> onUndo;
  std::function<bool(bool again)> undoOffered;
  std::function<void()> onCompare;
  std::function<void()> onMoved;
  std::function<void(HexKey, bool)> onKey;
  std::function<void(char32_t)> onType;
  std::function<void(HexSpot, bool)> onClick;
};

}  // namespace kvr::images
