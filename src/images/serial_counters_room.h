// The two serial number counters of the window: boxes, image, settings.
//
// A box that is on promises that every chip carries its own number. So a run starts with `armForRun` and goes on after
// a success only when `advanceAfterSuccess` says so: a chip without its number must not leave, and no number leaves
// twice. An armed counter is claimed, so no other window counts with it.
#pragma once

#include <string>
#include <vector>

#include "catalogue/selected_model.h"
#include "images/buffer_view.h"

namespace kvr::images {

class SerialCounters {
 public:
  SerialCounters(platform::World& world, platform::Activity& activity, const catalogue::SelectedModel& selected,
                 ImageSlots& slots, BufferViews& views);

  // Brings a counter in line with its check box: a click, or code that has set the box.
  void followBox(ImageKind kind);
  void loadSettings();

  // Start of a run: a box that is on but not armed yet is followed (settings, value, range). False: a box is on and its
  // number cannot go into the chip; the message box has been shown and the run must end there.
  [[nodiscard]] bool armForRun();
  // After a chip was programmed and verified, code first: next value into box, image, view and settings. False: the
  // next value cannot be written, or not be kept (message box shown); a repeat must end.
  [[nodiscard]] bool advanceAfterSuccess();

  // What the chip in hand carries, for a record: the number of each armed counter, code first, a slash between two.
  std::string numberInHand() const;

  // The counters whose box is on, as their boxes were read then.
  std::vector<AutoIncrement> switchedOn() const;

  void forgetArmed();
  // Boxes and buttons of a counter can be used or not; a counter that is on keeps its boxes closed.
  void enableControls(bool codeOn, bool dataOn);

 private:
  void follow(ImageSlot& slot);
  void readBoxes(ImageSlot& slot);
  bool claim(ImageSlot& slot);
  void catchUp(ImageSlot& slot);
  bool writeValue(ImageSlot& slot);
  [[nodiscard]] platform::FileResult save(ImageSlot& slot);
  void showField(ImageSlot& slot);
  bool armOne(ImageSlot& slot);
  bool advanceOne(ImageSlot& slot);
  void enable(ImageSlot& slot);
  void warn(const ImageSlot& slot, const std::string& text);
  platform::World& world_;
  const catalogue::SelectedModel& selected_;
  ImageSlots& slots_;
  BufferViews& views_;
};

}  // namespace kvr::images
