// The two views of the images: scrolling, redrawing, and the edit of single digits with its question.
#pragma once

#include <functional>

#include "images/alone.h"
#include "images/auto_increment.h"
#include "images/image_panel.h"
#include "platform/world.h"

namespace kvr::images {

class BufferViews {
 public:
  BufferViews(platform::World& world, ImagePanel& panel, ImageState& state);

  // Brings the view (0 code, 1 data) in line with its scroll bar and its buffer; writes `txt_length`.
  void vscFile_Change(int index);
  // The range takes in the last file and, when armed, the counter's field; scroll limits follow; redraws.
  void showRange(int index, const AutoIncrement& counter);
  void showEnd(int index);  // scrolls to the last lines
  // An empty view: scroll bar 0 .. 64 at 0.
  void showCleared(int index);

  Alone alone;                                           // the question before the first edit
  std::function<const AutoIncrement&(int)> readCounter;  // the counter of a view, fresh from its controls
  std::function<bool(int)> counterOn;                    // its field is to be shown marked
  bool editApproved() const { return editApproved_; }
  // While a run takes the image, a typed digit must not change what goes into the chip.
  void setReadOnly(bool on) { readOnly_ = on; }

 private:
  void key(int index, HexKey key, bool selecting);
  void type(int index, char32_t character);
  bool approve();
  HexPane& pane(int index) { return index == 0 ? panel_.txtBuffer2 : panel_.tetDataFlash2; }
  ImageBuffer& buffer(int index) { return index == 0 ? state_.CodeBuffer : state_.EepromBuffer; }
  void follow(int index);  // the scroll bar follows the model
  platform::World& world_;
  ImagePanel& panel_;
  ImageState& state_;
  bool editApproved_ = false;
  bool asking_ = false;
  bool readOnly_ = false;
  platform::Timer Timer11_;
};

}  // namespace kvr::images
