// One of the two images with all that belongs to it: buffer, controls, serial number, and the texts that name it.
// Whoever works on an image takes its slot and need not know which of the two it is.
#pragma once

#include <array>
#include <memory>
#include <optional>

#include "images/auto_increment.h"
#include "images/edit_history.h"
#include "images/image_panel.h"
#include "platform/settings_store.h"

namespace kvr::images {

struct ImageSlot {
  ImageKind kind;
  ImageBuffer& buffer;

  // The file.
  platform::Button& openButton;
  platform::TextBox& start;
  platform::TextBox& checkSum;
  platform::CheckBox& clearFirst;
  platform::Frame& frame;
  platform::Label& length;
  platform::Label& info;
  platform::Label& facts;     // what the image is
  platform::Label& warnings;  // what to look at before it is sent, a line each

  // The view.
  HexPane& pane;
  platform::ScrollBar& bar;

  // The serial number.
  platform::CheckBox& counterBox;
  platform::ControlArray<platform::TextBox, 4>& counterTexts;
  platform::ControlArray<platform::OptionButton, 3>& radix;

  const char* frameCaption;
  const char* lengthCaption;
  const char* dialogTitle;
  const char* pathKey;       // in section "Settings": the last file
  const char* section;       // of the settings: the counter's
  const char* counterTitle;  // of the counter's message boxes

  EditHistory history{};
  AutoIncrement counter{.kind = kind};
  std::unique_ptr<platform::SettingsClaim> claim = nullptr;  // held while the counter is armed
  // The counter's settings as this window last read or wrote them, in the order of `kCounterKeys`.
  std::optional<std::array<std::string, 5>> saved = std::nullopt;
  bool counterAllowed = true;  // the lock and the model let the user change the counter
};

// Keys and defaults of a counter's section: the four boxes, then the radix.
struct CounterKey {
  const char* key;
  const char* fallback;
};
inline constexpr std::array<CounterKey, 5> kCounterKeys{
    {{"address", "FFFF"}, {"Length", "8"}, {"next_value", "0000"}, {"Increase", "1"}, {"numeral_system", "1"}}};

struct ImageSlots {
  ImageSlots(ImagePanel& panel, ImageState& state);
  ImageSlot code;
  ImageSlot data;
  ImageSlot& of(ImageKind kind) { return kind == ImageKind::Code ? code : data; }
  std::array<ImageSlot*, 2> both() { return {&code, &data}; }
};

}  // namespace kvr::images
