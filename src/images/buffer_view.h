// The two views of the images: scrolling, redrawing, and the edit of single digits with its question, and its
// undo.
#pragma once

#include "images/image_slot_panel.h"
#include "platform/activity.h"
#include "platform/ui_lock.h"
#include "platform/world.h"

namespace kvr::images {

class BufferViews {
 public:
  BufferViews(platform::World& world, platform::Activity& activity, const platform::UiLock& lock, ImagePanel& panel,
              ImageSlots& slots, const ImageState& state);

  // Brings a view in line with its scroll bar and its buffer; writes `txt_length`.
  void redraw(ImageSlot& slot);
  // The range takes in the last file and, when armed, the counter's field; scroll limits follow; redraws.
  void showRange(ImageSlot& slot);
  void showEnd(ImageSlot& slot);  // scrolls to the last lines
  // An empty view, compared with nothing: scroll bar 0 .. 64 at 0.
  void showCleared(ImageSlot& slot);

 private:
  void connect(ImageSlot& slot);
  void key(ImageSlot& slot, HexKey key, bool selecting);
  void click(ImageSlot& slot, HexSpot spot, bool selecting);
  void type(ImageSlot& slot, char32_t character);
  void undo(ImageSlot& slot, bool again);
  bool approve();
  void follow(ImageSlot& slot);  // the scroll bar follows the model
  platform::World& world_;
  platform::Activity& activity_;
  const platform::UiLock& lock_;
  ImagePanel& panel_;
  const ImageState& state_;
  bool editApproved_ = false;
  platform::Timer approval_;  // runs out some time after the last digit
};

}  // namespace kvr::images
