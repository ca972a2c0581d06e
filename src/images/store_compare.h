// Store: a range of the code image to a binary file. Compare: the code image against a dump of the chip's memory that
// the terminal received.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>

#include "images/alone.h"
#include "images/image_panel.h"
#include "platform/world.h"

namespace kvr::images {

// The addresses to store, or why not.
struct StoreRange {
  AddressSpan span;
  std::string fault;  // empty: fine
};
StoreRange storeRange(std::int32_t start, std::int32_t length);

class StoreCompare {
 public:
  StoreCompare(platform::World& world, ImagePanel& panel, ImageState& state, platform::TextBox& textMsg);

  void comStoreFile_Click();
  void comComp_Click();

  Alone alone;  // the file dialog and the questions
  // The terminal's ring from its index 0, whole; empty when nothing waits in it. Not connected: empty.
  std::function<std::span<const std::uint8_t>()> receivedBytes;

 private:
  void store();
  void compare();
  platform::World& world_;
  ImagePanel& panel_;
  ImageState& state_;
  platform::TextBox& textMsg_;
};

}  // namespace kvr::images
