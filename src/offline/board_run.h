// One session with an off-line programmer board: finds the board on the line, builds its memory image from both code
// images, the options and the limit, erases it and writes it.
#pragma once

#include "engine/run_context.h"
#include "engine/trace.h"
#include "offline/board_facts.h"
#include "offline/board_image.h"
#include "offline/board_inputs.h"

namespace kvr::offline {

struct BoardJob {
  engine::Job job;
  BoardInputs inputs;
  bool wake = true;  // the board may wait in a sorting machine
};

// What the head of a trace has of it besides the chip's job.
engine::TraceFields traceFieldsOf(const BoardJob& job);

class BoardRun {
 public:
  // `image` and `facts` outlive the run: a board keeps its counts in a part of the image that no build fills.
  BoardRun(const BoardJob& job, const engine::RunServices& services, engine::RunView& view, BoardImage& image,
           BoardFacts& facts);

  [[nodiscard]] engine::Outcome write();
  // The code as the board's chips will hold it; without the bytes of the serial values, once it was written.
  const FileBuffer& file() const { return file_; }

 private:
  bool connectAndWrite();
  bool placeNumbers();
  bool placeNumber(bool dataField);
  void buildImage();

  const BoardJob& job_;
  BoardInputs inputs_;
  engine::TargetLink link_;
  engine::RunContext c_;
  BoardImage& image_;
  BoardFacts& facts_;
  FileBuffer file_;
  engine::LeftOut leftOut_;
  std::string box_;
};

}  // namespace kvr::offline
