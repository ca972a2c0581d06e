// What a chip turned out to be, as text: lines for the message pane and texts for the labels beside the options. The
// wording follows the letter of the chip's firmware, which settles its byte layout, and not the selected model.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "catalogue/firmware_version.h"
#include "options/option_set.h"

namespace kvr::options {

struct ChipAnswer {
  bool sizeUntold = false;  // firmwares of the selected family tell how much room they take, and this one did not
  std::string modelName;    // empty: unknown
  catalogue::FirmwareVersion firmware;
  catalogue::Stepping stepping;
  OptionBytes reported{};
  // Three bytes of the status frame after the firmware version, as the oldest layouts place them.
  std::uint8_t status11 = 0;
  std::uint8_t status12 = 0;
  std::uint8_t status13 = 0;
};

struct TargetReport {
  std::vector<std::string> lines;   // new lines of the message pane, in order
  std::optional<bool> doubleSpeed;  // set: the chip's speed mode is now known to be this
  bool clearStartPair = false;      // frames are no longer required to begin with the start pair
  // Texts of `LabLock` from index 1 on; labels after them are hidden. Not set: the labels stay as they are.
  std::optional<std::vector<std::string>> labels;
  bool operator==(const TargetReport&) const = default;
};

TargetReport describeTarget(const ChipAnswer& answer);

}  // namespace kvr::options
