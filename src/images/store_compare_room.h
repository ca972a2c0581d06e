// Store: a range of the code image to a binary file. Compare: the code image against a dump of the chip's memory that
// the terminal received.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>

#include "images/image_panel.h"
#include "platform/activity.h"
#include "platform/world.h"

namespace kvr::images {

// The addresses to store, or why not.
struct StoreRange {
  catalogue::AddressRange range;
  std::string fault;  // empty: fine
};
StoreRange storeRange(std::int32_t start, std::int32_t length);

class StoreCompare {
 public:
  StoreCompare(platform::World& world, platform::Activity& activity, ImagePanel& panel, const ImageState& state,
               platform::TextBox& textMsg);

  void store();
  void compare();

  // The terminal's ring from its index 0, whole; empty when nothing waits in it. Not connected: empty.
  std::function<std::span<const std::uint8_t>()> receivedBytes;

 private:
  void saveRange();
  void compareWith(std::span<const std::uint8_t> received);
  void tell(bool same, std::int32_t last);
  platform::World& world_;
  platform::Activity& activity_;
  ImagePanel& panel_;
  const ImageState& state_;
  platform::TextBox& textMsg_;
};

}  // namespace kvr::images
