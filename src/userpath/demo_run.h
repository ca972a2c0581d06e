// One download through the demo routine that the chip's running program carries: no power cycle, no baud negotiation,
// one fixed line setting. A command at line settings of its own may make the program jump into the routine first.
#pragma once

#include <optional>
#include <string>

#include "engine/programming.h"
#include "engine/run_context.h"
#include "engine/trace.h"
#include "userpath/demo_line.h"

namespace kvr::userpath {

// A line and the bytes to send on it.
struct UserCommand {
  std::string settings;  // "9600,n,8,1"
  std::string bytes;     // hexadecimal, as typed
};

struct DemoJob {
  engine::Job job;
  std::string settings;                // of the download's line
  std::optional<UserCommand> command;  // sent first
};

// What the head of a trace has of it besides the chip's job.
engine::TraceFields traceFieldsOf(const DemoJob& job);

// The pace at which the routine is called: 50, 100 or 200 ms by the line's rate.
engine::Millis pollPaceOf(const std::string& settings);

class DemoRun {
 public:
  DemoRun(const DemoJob& job, const engine::RunServices& services, engine::RunView& view);

  [[nodiscard]] engine::Outcome program();

 private:
  bool sendCommand();
  bool download();
  bool connect();
  bool readModel();
  bool erase();
  bool fails(int beeps, const std::string& words);
  bool opens(const std::string& settings);
  engine::Outcome end(bool good);

  const DemoJob& job_;
  DemoLine line_;
  engine::RunContext c_;
  engine::SendPlan sends_;
  bool wrongModel_ = false;
};

}  // namespace kvr::userpath
