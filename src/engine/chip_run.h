// One chip, from the closed port to the closed port: waits for it, connects, checks, erases, programs, writes the
// options. Nothing that it learns outlives it.
#pragma once

#include "engine/handshake.h"
#include "engine/job.h"
#include "engine/option_write.h"
#include "engine/programming.h"
#include "engine/run_books.h"
#include "engine/run_context.h"

namespace kvr::engine {

class ChipRun {
 public:
  // Services and view must live as long as the run.
  ChipRun(const Job& job, const RunServices& services, RunView& view);

  // The whole download. With `Job::handOver` the port is still open after a success. `books` give the chip its number,
  // and have the run's row before this returns.
  [[nodiscard]] Outcome program(RunBooks& books);
  // Tells what the chip is and holds, without touching it.
  [[nodiscard]] Outcome check();

 private:
  void begin();
  bool programChip(RunBooks& books);
  bool claim(RunBooks& books);
  bool connect();
  void ping();
  bool settle(Contact& contact);
  bool firmwareSupported();
  bool planFits();
  void tellLeftOut();
  bool erase(const ImagePlan& plan);
  Outcome end(RunKind kind, bool good, RunBooks& books);
  void record(Outcome& outcome, RunBooks& books);
  ChipSeen seen() const;

  Job job_;  // with the numbers of its chip, once there are any
  TargetLink link_;
  RunContext c_;
  OptionWrite optionWrite_;
  Handshake handshake_;
  Programming programming_;
  std::optional<Contact> contact_;
  SendPlan sends_;
  LeftOut leftOut_;
  BooksFault booksFault_ = BooksFault::None;
  std::string box_;
};

}  // namespace kvr::engine
