// The write side of a run: fit, erase, program, finish.
#pragma once

#include "engine/block_writer.h"

namespace kvr::engine {

class Programming {
 public:
  explicit Programming(Conversation& conversation);

  // Fills the run's plan; true: the images are too big, and what fits goes on.
  [[nodiscard]] bool planImageFit();
  // True: erased. False: words are the caller's.
  [[nodiscard]] bool eraseTarget();
  // Sends the images and the finish step; sets `programDone` and says all words. `format`: the frames to send (null:
  // the chip's).
  bool programImage(DataFrameFormat* format = nullptr);

  void showProgress();  // the bar over the download button
  void hideProgress();  // gone, and `labKbyte` empty

 private:
  bool eraseFirstGeneration(const Bytes& frame);
  bool awaitErased();
  bool eraseExtended(const Bytes& frame);
  void noteFactoryId();
  bool sendImages(DataFrameFormat& format);
  bool finish();
  Conversation& c_;
  ChipDataFrames chipFrames_;
};

}  // namespace kvr::engine
