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
  void clearReply() override { line_.clearReceiveState(); }
  bool awaitReply(engine::Millis limit) override { return line_.waitReply(limit); }
  // The reply echoes the sum of the data.
  bool accepts(std::uint16_t dataSum) const override {
    constexpr int kSumAt = 5, kShortest = 10;
    const auto& reply = line_.rx.buffer;
    return line_.rx.length() >= kShortest && (reply[kSumAt] << 8 | reply[kSumAt + 1]) == dataSum;
  }
  bool limitsByFirmware() const override { return false; }

 private:
  DemoLine& line_;
};

}  // namespace kvr::userpath
