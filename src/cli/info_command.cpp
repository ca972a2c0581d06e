// kvr info: what a chip is and holds.
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
    app.add_option("--model", model_, "A model of the chip's family (Ivy-HF0S)")->type_name("NAME");
    job_.declareLine(app);
    line_.declare(app);
  }

  ExitCode run(const Desk& desk) override {
    const catalogue::McuRecord* model = nullptr;
    if (const Problem problem = findModel(model_.empty() ? kUsual : model_, model))
      return fail(desk, problem.code, problem.why, problem.next);
    if (const ExitCode code = line_.take(desk); code != ExitCode::Passed) return code;
    if (model_.empty())
      desk.out.note("The chip is called as an " + std::string(kUsual) +
                    " is. Some families answer only when --model names one of theirs.");
    engine::Job job{.model = catalogue::describeModel(*model), .choices = options::defaultValues(model->family)};
    job_.setLine(job);
    RunConsole console(desk.loop, desk.out);
    line_.limit(desk, console);
    return tellOutcome(desk, console, job, engine::ChipRun(job, desk.services(), console).check());
  }

 private:
  static constexpr const char* kUsual = "Ivy-HF0S";
  std::string model_;
  JobArguments job_;
  LineArguments line_;
};

}  // namespace

std::unique_ptr<Command> makeInfoCommand() {
  return std::make_unique<InfoCommand>();
}

}  // namespace kvr::cli
