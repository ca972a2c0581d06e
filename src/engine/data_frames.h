// The frames that carry an image's bytes. Two conversations program in the same way and differ in these frames only:
// with a chip's boot firmware, and with the routine in a user's own firmware (see `BlockWriter`).
#pragma once

#include <cstdint>
#include <span>

#include "engine/conversation.h"

namespace kvr::engine {

struct DataFrame {
  Bytes wire;
  std::uint16_t dataSum = 0;  // of the data bytes alone
};

class DataFrameFormat {
 public:
  virtual ~DataFrameFormat() = default;
  // `retried`: the first frame of a block that has failed before.
  virtual DataFrame build(std::int32_t first, std::span<const std::uint8_t> data, bool retried) const = 0;
  virtual void clearReply() = 0;                          // before a frame goes out
  virtual bool awaitReply(Millis limit) = 0;              // true: a whole good frame came
  virtual bool accepts(std::uint16_t dataSum) const = 0;  // what came says that the data arrived
  virtual bool limitsByFirmware() const = 0;              // the firmware's own size at the top of flash counts
};

// 46 B9 frames, for chips.
class ChipDataFrames : public DataFrameFormat {
 public:
  explicit ChipDataFrames(Conversation& conversation) : c_(conversation) {}
  DataFrame build(std::int32_t first, std::span<const std::uint8_t> data, bool retried) const override;
  void clearReply() override;
  bool awaitReply(Millis limit) override;
  bool accepts(std::uint16_t dataSum) const override;
  bool limitsByFirmware() const override { return true; }

 private:
  Conversation& c_;
};

DataFrame buildDataFrame(std::int32_t first, std::span<const std::uint8_t> data, std::uint8_t command, SumForm form);
DataFrame buildDemoDataFrame(std::int32_t first, std::span<const std::uint8_t> data, std::uint8_t command);

}  // namespace kvr::engine
