// kvr board: prepares an off-line board, which then programs chips by itself.
#include "cli/command.h"
#include "cli/device_run.h"
#include "cli/evidence.h"
#include "cli/outcome_text.h"
#include "cli/serial_numbers.h"
#include "offline/board_run.h"
#include "offline/download_limit.h"

namespace kvr::cli {
namespace {

offline::IncrementField fieldOf(const images::AutoIncrement& counter) {
  return {.enabled = true,
          .last = counter.address,
          .length = counter.bytes,
          .next = counter.next,
          .step = counter.step,
          .radix = static_cast<int>(counter.radix)};
}

class BoardCommand : public Command {
 public:
  std::string name() const override { return "board"; }
  std::string about() const override { return "Prepare an off-line board"; }
  std::string example() const override { return "kvr board --project product.KVR --limit 500"; }

  void declare(CLI::App& app) override {
    job_.declare(app);
    line_.declare(app);
    job_.declareSlowAnswers(app);
    app.add_option("--limit", limit_, "Chips that the board may program (1000000)")->type_name("N");
    serial_.declare(app);
    evidence_.declare(app);
  }

  ExitCode run(const Desk& desk) override {
    JobSource source;
    if (const ExitCode code = prepare(desk, job_, line_, source); code != ExitCode::Passed) return code;
    const engine::Job& job = source.job;
    const offline::DownloadLimit limit = offline::readDownloadLimit(limit_);
    if (!limit.refusal.empty()) return fail(desk, ExitCode::WrongUse, limit.refusal, "Change --limit.");
    if (!job.model.traits().offlineBoard)
      return fail(desk, ExitCode::Refused, "The off-line board does not support this MCU type.");
    offline::BoardJob board{.job = job, .inputs = inputsOf(job)};
    board.inputs.limit = limit.chips;
    if (const Problem problem = placeNumbers(source, board.inputs))
      return fail(desk, problem.code, problem.why, problem.next);
    if (const ExitCode code = evidence_.check(desk); code != ExitCode::Passed) return code;
    RunConsole console(desk);
    line_.limit(desk, console);
    offline::BoardImage image;
    offline::BoardFacts facts;
    const auto outcome = evidence_.conduct(
        desk, console, engine::RunKind::Board, job, traceFieldsOf(board),
        [&](engine::RunView& view) { return offline::BoardRun(board, desk.services(), view, image, facts).write(); });
    return tellOutcome(desk, console, job, outcome);
  }

 private:
  static offline::BoardInputs inputsOf(const engine::Job& job) {
    offline::BoardInputs inputs{.record = &job.model.record, .device = job.model.name()};
    inputs.sorter = {true, false, false};  // what a board without a sorting machine needs
    inputs.options = engine::optionBytesOf(job);
    return inputs;
  }

  Problem placeNumbers(const JobSource& source, offline::BoardInputs& inputs) const {
    std::vector<images::AutoIncrement> counters;
    const Problem problem = serial_.counters(source, job_.yes, counters);
    for (const images::AutoIncrement& counter : counters)
      (counter.kind == images::ImageKind::Code ? inputs.codeIncrement : inputs.dataIncrement) = fieldOf(counter);
    return problem;
  }

  JobArguments job_;
  LineArguments line_;
  SerialArguments serial_;
  Evidence evidence_;
  std::string limit_ = "1000000";
};

}  // namespace

std::unique_ptr<Command> makeBoardCommand() {
  return std::make_unique<BoardCommand>();
}

}  // namespace kvr::cli
