// kvr info: what a chip is and holds.
#include "cli/any_chip.h"
#include "cli/command.h"
#include "cli/job_source.h"
#include "cli/line_arguments.h"
#include "cli/outcome_text.h"
#include "engine/chip_run.h"

namespace kvr::cli {
namespace {

class InfoCommand : public Command {
 public:
  std::string name() const override { return "info"; }
  std::string about() const override { return "Tell what a chip is and holds, without changing it"; }
  std::string example() const override { return "kvr info --model Ivy-HF0S --timeout 20"; }

  void declare(CLI::App& app) override {
    app.add_option("--model", model_,
                   "A model of the chip's family; without it all ways to call a chip are tried in turns")
        ->type_name("NAME");
    job_.declareLine(app);
    line_.declare(app);
    evidence_.declare(app);
  }

  ExitCode run(const Desk& desk) override {
    const catalogue::McuRecord* model = nullptr;
    if (!model_.empty())
      if (const Problem problem = findModel(model_, model)) return fail(desk, problem.code, problem.why, problem.next);
    if (const ExitCode code = line_.take(desk); code != ExitCode::Passed) return code;
    if (const ExitCode code = evidence_.check(desk); code != ExitCode::Passed) return code;
    RunConsole console(desk);
    line_.limit(desk, console);
    const Look look = model ? lookAt(desk, console, *model) : lookAtAnyChip(desk, console, job_, evidence_);
    evidence_.keep(desk);
    return tellOutcome(desk, console, look.job, look.outcome);
  }

 private:
  Look lookAt(const Desk& desk, RunConsole& console, const catalogue::McuRecord& model) const {
    Look look{.job = checkJob(model, job_), .outcome = {}};
    look.outcome = evidence_.watch(desk, console, engine::RunKind::Check, look.job, {}, [&](engine::RunView& view) {
      return engine::ChipRun(look.job, desk.services(), view).check();
    });
    return look;
  }

  std::string model_;
  JobArguments job_;
  LineArguments line_;
  Evidence evidence_;
};

}  // namespace

std::unique_ptr<Command> makeInfoCommand() {
  return std::make_unique<InfoCommand>();
}

}  // namespace kvr::cli
