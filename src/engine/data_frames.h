// The frames that carry an image's bytes. Two conversations program in the same way and differ in these frames only:
// with a chip's boot firmware, and with the routine in a user's own firmware (see `BlockWriter`).
#pragma once

#include <cstdint>
#include <span>

#include "engine/target_link.h"

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
  // Sends the frame. True: what came within the limit says that the data arrived.
  [[nodiscard]] virtual bool send(const DataFrame& frame, Millis limit) = 0;
};

// 46 B9 frames, for chips.
class ChipDataFrames : public DataFrameFormat {
 public:
  ChipDataFrames(TargetLink& link, const catalogue::McuRecord& record) : link_(link), record_(record) {}
  DataFrame build(std::int32_t first, std::span<const std::uint8_t> data, bool retried) const override;
  [[nodiscard]] bool send(const DataFrame& frame, Millis limit) override;

 private:
  bool accepts(const Reply& reply, std::uint16_t dataSum) const;
  TargetLink& link_;
  const catalogue::McuRecord& record_;
};

DataFrame buildDataFrame(std::int32_t first, std::span<const std::uint8_t> data, std::uint8_t command, SumForm form);
DataFrame buildDemoDataFrame(std::int32_t first, std::span<const std::uint8_t> data, std::uint8_t command);

}  // namespace kvr::engine
