// kvr program: one chip, or one after the other.
#include "cli/batch_line.h"
#include "cli/command.h"
#include "cli/device_run.h"
#include "cli/evidence.h"
#include "cli/series.h"
#include "engine/chip_run.h"
#include "engine/turn_rounds.h"
#include "userpath/trigger_run.h"

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
    line_.declare(app);
    series_.declare(app);
    batch_.declare(app);
    evidence_.declare(app);
    const std::string group = "A command to the running program, ahead of the download";
    app.add_option("--trigger", trigger_, "Bytes that make it jump into the boot firmware")
        ->type_name("HEX|TEXT")
        ->group(group);
    app.add_option("--trigger-line", triggerLine_, "Line settings for it (9600,n,8,1)")
        ->type_name("LINE")
        ->group(group);
  }

  ExitCode run(const Desk& desk) override {
    JobSource source;
    if (const ExitCode code = prepare(desk, job_, line_, source); code != ExitCode::Passed) return code;
    if (const ExitCode code = checkLine(desk, triggerLine_); code != ExitCode::Passed) return code;
    if (const ExitCode code = evidence_.check(desk); code != ExitCode::Passed) return code;
    RunConsole console(desk);
    line_.limit(desk, console);
    const auto series = [&](Numbering& numbers, engine::RunBooks& books) {
      return Series(desk, series_, source, console, numbers).program([&](const engine::Job& job) {
        return programOne(desk, console, job, books);
      });
    };
    if (batch_.batch.empty()) {
      OwnNumbering numbers(desk.out, series_.serial, job_.yes);
      engine::NoBooks none;
      return series(numbers, none);
    }
    std::vector<images::AutoIncrement> own;
    if (const Problem problem = series_.serial.ofBatch(source, own))
      return fail(desk, problem.code, problem.why, problem.next);
    BatchLine batch(desk, batch_, line_.device(desk), own);
    return series(batch, batch);
  }

 private:
  engine::Outcome programOne(const Desk& desk, RunConsole& console, engine::Job job, engine::RunBooks& books) {
    if (!trigger_.empty()) {
      const userpath::UserCommand command{triggerLine_, commandBytes(trigger_)};
      const engine::Outcome sent = evidence_.watch(
          desk, console, engine::RunKind::Trigger, job, {{"line", command.settings}, {"command", command.bytes}},
          [&](engine::RunView& view) { return userpath::sendTrigger(job, command, desk.services(), view); });
      if (!sent.passed()) {
        evidence_.keep(desk);
        return sent;
      }
    }
    turnRounds_.applyTo(job);
    const engine::Outcome outcome = evidence_.conduct(
        desk, console, engine::RunKind::Chip, job, {},
        [&](engine::RunView& view) { return engine::ChipRun(job, desk.services(), view).program(books); });
    turnRounds_.note(job, outcome);
    return outcome;
  }

  JobArguments job_;
  LineArguments line_;
  SeriesArguments series_;
  Evidence evidence_;
  BatchArguments batch_;
  engine::TurnRounds turnRounds_;
  std::string trigger_;
  std::string triggerLine_ = "9600,n,8,1";
};

}  // namespace

std::unique_ptr<Command> makeProgramCommand() {
  return std::make_unique<ProgramCommand>();
}

}  // namespace kvr::cli
