// Sends address ranges block by block, each frame proved by its reply, with retries and the progress bar.
#pragma once

#include "engine/block_plan.h"
#include "engine/data_frames.h"
#include "engine/run_context.h"

namespace kvr::engine {

class BlockWriter {
 public:
  static constexpr int kAttempts = 4;  // of one block

  // `clockHz`: of the chip, which sets the time limit of a frame.
  BlockWriter(RunContext& context, DataFrameFormat& format, const SendPlan& plan, double clockHz)
      : c_(context), format_(format), plan_(plan), clockHz_(clockHz) {}

  // All ranges of the plan. False: a block failed four times, or Stop.
  [[nodiscard]] bool program();

 private:
  bool programRange(const SendRange& range);
  void tellCut(std::int32_t bound);
  bool programBlock(AddressRange block, bool split, bool retried);
  bool sendDataFrame(FrameSpan span, bool retried);
  RunContext& c_;
  DataFrameFormat& format_;
  const SendPlan& plan_;
  double clockHz_;
};

}  // namespace kvr::engine
