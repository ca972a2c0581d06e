// How the images fit the connected chip, what is to be erased, and which frames go out: comparable values, worked out
// before the first byte is sent.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "engine/frames.h"
#include "engine/target_info.h"
#include "options/option_set.h"

namespace kvr::engine {

struct ImagePlan {
  bool made = false;               // empty at the start of a run
  std::int32_t planDataStart = 0;  // data area on this chip, both ends included
  std::int32_t planDataEnd = 0;
  std::int32_t planUnusedStart = 0;  // first code address that the image does not reach
  bool planClearUnused = false;      // the erase takes in the unused tail of the code area
  bool planSpills = false;           // the code image runs past the code area into the data area
  std::int32_t planSpillEnd = 0;
  bool operator==(const ImagePlan&) const = default;
};

struct ImageFit {
  ImagePlan plan;
  bool tooBig = false;
  bool operator==(const ImageFit&) const = default;
};
// `codeEnd`: last address of the code image. `clearUnusedChosen`: the option `Clear_Unused_AP_YES`.
ImageFit fitImages(const TargetInfo& target, std::int32_t codeEnd, bool clearUnusedChosen);

// Count of 512-byte sectors that the first generation erases from address 0; 255: all.
int eraseSectorCount(const TargetInfo& target, const catalogue::McuRecord& selected, std::int32_t codeEnd);

struct AddressRange {
  std::int32_t first = 0;
  std::int32_t last = 0;
  bool operator==(const AddressRange&) const = default;
};
// What the later firmwares erase besides the code area.
AddressRange eraseRange(const TargetInfo& target, const catalogue::McuRecord& selected, const ImagePlan& plan,
                        const options::OptionBytes& reported);

Bytes buildEraseFrame(const TargetInfo& target, const catalogue::McuRecord& selected, int sectorCount,
                      AddressRange range);

// The reply limit of a data frame, by the chip's clock and the line's rate.
int dataFrameLimitMs(double clockHz, int baud);

}  // namespace kvr::engine
