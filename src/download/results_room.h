// What hangs on the outcome of a run, in one place for every kind of run: the large sign, the success counter, the
// batch log, the beep.
#pragma once

#include <functional>
#include <string>

#include "download/download_panel.h"
#include "download/remedy.h"
#include "download/run_history.h"
#include "download/trace_room.h"
#include "engine/outcome.h"
#include "engine/turn_rounds.h"
#include "platform/world.h"

namespace kvr::download {

class ResultsRoom {
 public:
  ResultsRoom(platform::World& world, DownloadPanel& panel, platform::TextBox& textMsg, TraceRoom& traces);

  // A run of any kind waits for its chip or board; for each round, when it repeats. `more`: for its trace, what its job
  // has besides a chip's.
  void begin(engine::RunKind kind, const engine::Job& job, const engine::TraceFields& more = {});
  // It has ended. Counts a success, writes the log, and only then shows the verdict; the beep is the last. A box that
  // the outcome brings is shown after all that.
  void end(const engine::Outcome& outcome, const std::string& model, const std::string& serialNumber);
  // One that could not start, for a reason that a box tells first. The record has it without the blanks around it.
  void refuse(engine::RunKind kind, const std::string& why, const std::string& model);
  // What the sign says, and what was offered beside it, belongs to another model, image or project.
  void forget();

  void clearCount();
  // What the buttons beside the sign offer; empty when they are not shown.
  const Remedy& remedy() const { return remedy_; }

  // What the runs of this session have learnt of each model.
  engine::TurnRounds turnRounds;

  // Writes the batch log, when one is wanted. Must be connected.
  std::function<void(const RunRecord&)> writeLog;

  const RunHistory& history() const { return history_; }

 private:
  void offer(const Remedy& remedy);
  void count();
  void storeCount(const std::string& count);
  platform::World& world_;
  DownloadPanel& panel_;
  platform::TextBox& textMsg_;
  Remedy remedy_;
  int offeredAt_ = 0;  // Max Baud then
  RunHistory history_;
  platform::Signal::Token baudToken_;
  TraceRoom& traces_;
};

}  // namespace kvr::download
