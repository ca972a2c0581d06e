#include "offline/board_run.h"

#include "offline/board_connection.h"
#include "offline/board_header.h"
#include "offline/board_writer.h"
#include "offline/increment_blocks.h"

namespace kvr::offline {
namespace {

ImageView viewOf(const engine::JobImage& image) {
  return {image.bytes, image.rangeStart, image.rangeEnd, image.loaded};
}

}  // namespace

engine::TraceFields traceFieldsOf(const BoardJob& job) {
  return {{"pins", std::to_string(job.inputs.pins)},
          {"limit", std::to_string(job.inputs.limit)},
          {"wake", job.wake ? "yes" : "no"}};
}

BoardRun::BoardRun(const BoardJob& job, const engine::RunServices& services, engine::RunView& view, BoardImage& image,
                   BoardFacts& facts)
    : job_(job),
      inputs_(job.inputs),
      link_(services, view, job.job.port, engine::SumForm::BoardCrc),
      c_(job_.job, link_),
      image_(image),
      facts_(facts),
      file_(prepareFileBuffer(job.job.record(), viewOf(job.job.code), viewOf(job.job.data))) {
  link_.setTurnRound(job.job.turnRound);
}

engine::Outcome BoardRun::write() {
  image_.clear();
  image_.writeLimit(inputs_.limit);
  const bool good = connectAndWrite();
  c_.view().progressDone();
  engine::Outcome outcome = c_.outcome(engine::RunKind::Board, good, leftOut_);
  outcome.box = box_;
  link_.clearQueues();
  link_.close();
  c_.view().lamp(false);
  return outcome;
}

bool BoardRun::connectAndWrite() {
  BoardConnection connection(c_, facts_);
  if (!connection.connectBoard(job_.wake) || !connection.queryBoardInfo() || !connection.queryBoardVersion())
    return false;
  c_.say("");
  c_.say("Connect OK.");
  c_.view().append("\n");
  inputs_.capacity = facts_.capacity;
  if (!placeNumbers()) return false;
  buildImage();
  return BoardWriter(c_, connection, facts_).eraseBoardAndWrite(image_, file_);
}

// False: the batch would outgrow its serial values.
bool BoardRun::placeNumbers() {
  for (const bool dataField : {false, true}) {
    if (placeNumber(dataField)) continue;
    box_ = incrementOverflowText(dataField);
    return c_.fail(1, "Operation stopped. ");
  }
  if (inputs_.codeIncrement.enabled || inputs_.dataIncrement.enabled) image_.openIncrementAreas();
  return !c_.stopped();
}

bool BoardRun::placeNumber(bool dataField) {
  const IncrementField& field = dataField ? inputs_.dataIncrement : inputs_.codeIncrement;
  const IncrementBlock block = makeIncrementBlock(field, dataField ? inputs_.record->dataStart : 0);
  placeIncrement(dataField, block.bytes, image_.header());
  if (!field.enabled) return true;
  if (incrementOverflows(field, inputs_.limit)) return false;
  placeNextValue(dataField, nextValueBytes(field), image_.header());
  file_.blank(block.start, field.length);
  return true;
}

void BoardRun::buildImage() {
  const CodeFit fit = fitCode(*inputs_.record, inputs_.capacity, file_);
  facts_.capacity = fit.capacity;
  if (!fit.message.empty()) c_.view().box(fit.message);
  fillBoardHeader(inputs_, file_, fit, image_.header());
  c_.say("we are  processing data, please wait...");
  image_.writeCrcTable(file_);
  image_.placeCode(file_);
  leftOut_.bytes = bytesLeftOut(file_, fit.codeLast, facts_);
  leftOut_.from = static_cast<std::int32_t>(fit.codeLast) + 1;
  const std::string words = leftOutText(static_cast<int>(leftOut_.bytes));
  if (!words.empty()) c_.say(words);
  leftOut_.bytes += engine::lostAtLoad(job_.job.code) + (job_.job.data.loaded ? engine::lostAtLoad(job_.job.data) : 0);
}

}  // namespace kvr::offline
