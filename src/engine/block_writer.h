// Sends address ranges block by block, each frame proved by its reply, with retries and the progress bar.
#pragma once

#include <functional>

#include "engine/block_plan.h"
#include "engine/data_frames.h"

namespace kvr::engine {

class BlockWriter {
 public:
  static constexpr int kAttempts = 4;  // of one block

  BlockWriter(Conversation& conversation, DataFrameFormat& format) : c_(conversation), format_(format) {}

  // False: a block failed four times, or Stop.
  [[nodiscard]] bool programRange(const SendPlan& plan, SendRange range);

 private:
  std::int32_t limitByFirmware(std::int32_t end);
  bool programBlock(const SendPlan& plan, AddressRange block, bool split, bool retried);
  bool sendDataFrame(const SendPlan& plan, FrameSpan span, bool retried);
  void showScale(const ProgressScale& scale);
  Conversation& c_;
  DataFrameFormat& format_;
};

}  // namespace kvr::engine
