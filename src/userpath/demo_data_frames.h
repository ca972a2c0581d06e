// The demo routine's frames for an image's bytes.
#pragma once

#include "engine/data_frames.h"
#include "userpath/demo_line.h"

namespace kvr::userpath {

class DemoDataFrames : public engine::DataFrameFormat {
 public:
  explicit DemoDataFrames(DemoLine& line) : line_(line) {}

  engine::DataFrame build(std::int32_t first, std::span<const std::uint8_t> data, bool retried) const override {
    return engine::buildDemoDataFrame(first, data, retried ? kDemoDataAgain : kDemoData);
  }
  // The reply echoes the sum of the data.
  [[nodiscard]] bool send(const engine::DataFrame& frame, engine::Millis limit) override {
    constexpr std::size_t kSumAt = 5, kShortest = 10;
    const auto reply = line_.exchange(frame.wire, limit);
    return reply && reply->size() >= kShortest && ((*reply)[kSumAt] << 8 | (*reply)[kSumAt + 1]) == frame.dataSum;
  }

 private:
  DemoLine& line_;
};

}  // namespace kvr::userpath
