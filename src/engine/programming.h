// The write side of a run: fit, erase, program, finish.
#pragma once

#include "engine/block_writer.h"
#include "engine/image_plan.h"

namespace kvr::engine {

class Programming {
 public:
  explicit Programming(RunContext& context) : c_(context) {}

  // True: erased. False: telling it is the caller's.
  [[nodiscard]] bool erase(const Contact& contact, const ImagePlan& plan);
  // Sends the images and the finish step. False: the user knows why.
  [[nodiscard]] bool program(DataFrameFormat& format, const SendPlan& plan, double clockHz);

  const std::string& timeText() const { return timeText_; }    // "[00:07]" that the data took
  const std::string& factoryId() const { return factoryId_; }  // 14 hexadecimal digits of the erase reply, or empty

 private:
  bool eraseFirstGeneration(const Bytes& frame);
  bool eraseExtended(const Bytes& frame, const Contact& contact);
  void noteFactoryId(const Reply& reply);
  bool finish();
  RunContext& c_;
  std::string timeText_, factoryId_;
};

// The highest address that the chip's firmware leaves to an image; `SendPlan::kNoLimit`: it keeps no more than the
// model's row says.
std::int32_t firmwareLimit(const TargetInfo& chip, const catalogue::McuRecord& selected);

}  // namespace kvr::engine
