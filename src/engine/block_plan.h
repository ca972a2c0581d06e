// Which bytes go out in which frames: ranges, blocks and frames as values.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "engine/image_plan.h"
#include "engine/job.h"

namespace kvr::engine {

// One image range to send. `split`: a block goes out in several frames.
struct SendRange {
  bool split = true;
  std::int32_t first = 0;
  std::int32_t last = 0;
  bool operator==(const SendRange&) const = default;
};

// What one run sends: the bytes by chip address, and the ranges of them in order.
struct SendPlan {
  std::vector<std::uint8_t> bytes;  // what lies beyond their end reads 0
  std::vector<SendRange> ranges;
  std::int32_t highest = kNoLimit;  // the firmware keeps what is above it: a range ends in the block that holds it
  static constexpr std::int32_t kNoLimit = INT32_MAX;
  bool cut(const SendRange& range, int blockSize) const;                 // the limit ends this range early
  std::int32_t workingEnd(const SendRange& range, int blockSize) const;  // the last address asked for
  std::int64_t bytesSent(int blockSize) const;
  // The address goes to the chip with this value.
  bool carries(std::int64_t address, std::uint8_t value, int blockSize) const;
  std::uint8_t at(std::int64_t address) const {
    return address >= 0 && address < std::ssize(bytes) ? bytes[static_cast<std::size_t>(address)] : std::uint8_t{0};
  }
};
SendPlan planSends(const catalogue::McuRecord& selected, catalogue::FirmwareVersion version, int blockSize,
                   int frameSize, const JobImage& code, const JobImage& eeprom);

// Bytes of the images that differ from the fill and do not go out.
struct LeftOut {
  std::int64_t bytes = 0;
  std::int32_t from = 0;  // chip address of the first of them
  bool operator==(const LeftOut&) const = default;
};
LeftOut leftOutOf(const SendPlan& plan, const Job& job);
// Of one image, what its own range leaves out already: its file was longer than the model's memory.
std::int64_t lostAtLoad(const JobImage& image);
// Whether every byte of the serial numbers' fields goes out.
bool carriesNumbers(const SendPlan& plan, const Job& job);

// The highest address that a lone code image may reach.
std::int32_t codeLimit(const catalogue::McuRecord& selected, catalogue::FirmwareVersion version);

// The block-rounded end of a range; at least 27Fh.
std::int32_t roundedEnd(std::int32_t last, int blockSize);

// The blocks of a range, in rising order: each from its start (the first one may be partial) to its last address.
std::vector<AddressRange> blocksOf(std::int32_t first, std::int32_t workingEnd, int blockSize);

// The frames of a block. After a first address that is no multiple of the frame size the frames start on multiples, so
// the second one repeats some of the first one's bytes.
struct FrameSpan {
  std::int32_t first = 0;
  std::int32_t count = 0;
  bool operator==(const FrameSpan&) const = default;
};
std::vector<FrameSpan> framesOf(AddressRange block, bool split, int frameSize);

// How the progress bar counts a range: addresses, or units of 256 of them when it reaches beyond 7FFFh.
struct ProgressScale {
  int minimum = 0;
  int maximum = 0;
  bool by256 = false;
  int valueAt(std::int32_t end) const;  // `end`: address after the last block that went through
  bool operator==(const ProgressScale&) const = default;
};
ProgressScale progressScale(std::int32_t first, std::int32_t last);

// "12.500K"; below one kilobyte ".500K".
std::string kilobyteText(std::int32_t bytes);

}  // namespace kvr::engine
