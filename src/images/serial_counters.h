// The two serial number counters of the window: boxes, image, settings.
//
// A box that is on promises that every chip carries its own number. So a run starts with `armForRun` and goes on after
// a success only when `advanceAfterSuccess` says so: a chip without its number must not leave.
#pragma once

#include "catalogue/selected_model.h"
#include "images/alone.h"
#include "images/auto_increment.h"
#include "images/buffer_views.h"
#include "images/image_panel.h"
#include "platform/world.h"

namespace kvr::images {

class SerialCounters {
 public:
  SerialCounters(platform::World& world, const catalogue::SelectedModel& selected, ImagePanel& panel, ImageState& state,
                 BufferViews& views);

  AutoIncrement code;
  AutoIncrement data;
  Alone alone;  // a person's click, with the message box that may come of it

  // Handlers of the check boxes; also run by code to bring a counter in line with its box.
  void cheAuto_Increase_Click();
  void cheData_Auto_Increase_Click();

  void readAutoControls();                            // both records from their controls
  [[nodiscard]] bool checkAutoRange(AutoIncrement&);  // message box and false when the field does not fit; arms it
  [[nodiscard]] bool writeAutoValue(AutoIncrement&);  // message box and false when `next` cannot be written
  void advanceIncrement(AutoIncrement&);              // the following value into the box, if armed
  void showAutoField(AutoIncrement&);
  void loadAutoSettings();
  void saveAutoSettings();

  // Start of a run: a box that is on but not armed yet is clicked (settings, value, range). False: a box is on and its
  // field could not be armed or written; the message box has been shown and the run must end there.
  [[nodiscard]] bool armForRun();
  // After a chip was programmed and verified, code first: next value into box, image, view and settings. False: the
  // next value cannot be written (message box shown); a repeat must end.
  [[nodiscard]] bool advanceAfterSuccess();

  // What the chip in hand carries, for a record: the number of each armed counter, code first, a slash between two.
  std::string numberInHand() const;

  void forgetArmed() { code.armed = data.armed = false; }
  // Boxes and buttons of an instance can be used or not; a counter that is on keeps its boxes closed.
  void enableControls(bool codeOn, bool dataOn);

 private:
  // One instance with all that belongs to it.
  struct Side {
    AutoIncrement& record;
    platform::CheckBox& check;
    platform::ControlArray<platform::TextBox, 4>& boxes;
    platform::ControlArray<platform::OptionButton, 3>& radix;
    ImageBuffer& buffer;
    int view;             // 0 code, 1 data
    const char* section;  // of the settings
    const char* title;    // of message boxes
    bool allowed;         // the lock and the model let a person use the controls
  };
  Side side(const AutoIncrement& record);
  void click(AutoIncrement& record);
  bool armOne(AutoIncrement& record);
  bool advanceOne(AutoIncrement& record);
  void read(AutoIncrement& record);
  void enable(AutoIncrement& record);
  platform::World& world_;
  const catalogue::SelectedModel& selected_;
  ImagePanel& panel_;
  ImageState& state_;
  BufferViews& views_;
  bool codeAllowed_ = true;
  bool dataAllowed_ = true;
};

}  // namespace kvr::images
