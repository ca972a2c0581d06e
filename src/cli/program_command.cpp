// kvr program: one chip, or one after the other.
#include <cmath>

#include "cli/command.h"
#include "cli/job_source.h"
#include "cli/line_arguments.h"
#include "cli/outcome_text.h"
#include "cli/run_console.h"
#include "engine/chip_run.h"

namespace kvr::cli {
namespace {

class ProgramCommand : public Command {
 public:
  std::string name() const override { return "program"; }
  std::string about() const override { return "Program a chip"; }
  std::string example() const override { return "kvr program --model Ivy-HF0S firmware.hex --port /dev/ttyUSB0"; }

  void declare(CLI::App& app) override {
    job_.declare(app);
    job_.declareLine(app);
    port_.declare(app);
  }

  ExitCode run(const Desk& desk) override {
    JobSource source;
    if (const Problem problem = JobMaker(job_, desk.files, desk.codec).make(source))
      return fail(desk, problem.code, problem.why, problem.next);
    for (const std::string& remark : source.remarks) desk.out.note(remark);
    if (const ExitCode code = port_.take(desk); code != ExitCode::Passed) return code;
    RunConsole console(desk.loop, desk.out);
    port_.limit(desk, console);
    const engine::Outcome outcome = engine::ChipRun(source.job, desk.services(), console).program();
    return tellOutcome(desk, console, source.job, outcome);
  }

 private:
  JobArguments job_;
  LineArguments port_;
};

}  // namespace

std::unique_ptr<Command> makeProgramCommand() {
  return std::make_unique<ProgramCommand>();
}

}  // namespace kvr::cli
