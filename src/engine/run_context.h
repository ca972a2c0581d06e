// What all sequences of one run share: the job, the line, and the telling of how it goes. It lives as long as the run.
#pragma once

#include <string>

#include "engine/block_plan.h"
#include "engine/contact.h"
#include "engine/job.h"
#include "engine/target_link.h"

namespace kvr::engine {

class RunContext {
 public:
  RunContext(const Job& theJob, TargetLink& line) : job(theJob), link(line) {}

  const Job& job;
  TargetLink& link;

  std::string reportedCode;  // of the connected chip; chooses between a model's two codes. Empty: not told

  RunView& view() { return link.view(); }
  void say(const std::string& line) { view().say(line); }
  const catalogue::McuRecord& record() const { return job.record(); }
  const catalogue::FamilyTraits& traits() const { return job.model.traits(); }
  SumForm form() const { return sumFormOf(job.record()); }

  // A failure: beeps, a line in the pane, kept for the outcome. False, for `return fail(...)`.
  bool fail(int beeps, const std::string& line);
  // The same with "(End: hh:mm:ss)" after the message.
  bool failNow(int beeps, const std::string& words);
  // The port could not be opened.
  bool failPort(int beeps);
  // A stop that was asked for: told in the pane and kept. Nothing more is told of a port that has gone.
  [[nodiscard]] bool stopped();
  void tellStop();
  const std::string& words() const { return words_; }

  // The stage that the run is in, and what each took so far.
  void enter(Stage stage);
  Stage stage() const { return stage_; }
  const StageTimes& spent();
  void note(Setback what) { setbacks_.push_back({what, link.loop().now() - runBegan_}); }
  void triesRate(int baud) { triedBaud_ = baud; }

  // The one place that says how a run ended. Good: everything went through but what was left out.
  [[nodiscard]] Outcome outcome(RunKind kind, bool good, const LeftOut& leftOut);

  void stampStart() { startMark_ = link.loop().now(); }
  std::string elapsedText() const;  // "[01:25]" since the stamp
  std::string timeOfDay() { return link.clock().timeOfDay(); }

 private:
  void bookTime();
  std::string words_;
  bool portFailed_ = false;
  Stage stage_ = Stage::Prepare;
  platform::Instant stageBegan_ = link.loop().now();
  platform::Instant runBegan_ = stageBegan_;
  std::vector<SetbackAt> setbacks_;
  int triedBaud_ = 0;
  platform::Instant startMark_{0};
  StageTimes spent_{}, turned_{}, rested_{};
  platform::Micros contact_{0};
  std::vector<Rest> longRests_;
};

}  // namespace kvr::engine
