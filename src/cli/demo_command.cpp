// kvr demo: through the download routine of the user's own program.
#include "cli/command.h"
#include "cli/device_run.h"
#include "cli/evidence.h"
#include "cli/series.h"
#include "userpath/demo_run.h"

namespace kvr::cli {
namespace {

class DemoCommand : public Command {
 public:
  std::string name() const override { return "demo"; }
  std::string about() const override { return "Program through the download routine of the user's own program"; }
  std::string example() const override { return "kvr demo --model Cedar-H80D app.hex --line 115200,e,8,1"; }

  void declare(CLI::App& app) override {
    job_.declare(app);
    line_.declare(app);
    series_.declare(app);
    evidence_.declare(app);
    const std::string group = "The routine";
    app.add_option("--line", settings_, "Its line settings (38400,e,8,1)")->type_name("LINE")->group(group);
    app.add_option("--command", command_, "Bytes that make the program jump into it")
        ->type_name("HEX|TEXT")
        ->group(group);
    app.add_option("--command-line", commandLine_, "Line settings for them (9600,n,8,1)")
        ->type_name("LINE")
        ->group(group);
  }

  ExitCode run(const Desk& desk) override {
    JobSource source;
    if (const ExitCode code = prepare(desk, job_, line_, source); code != ExitCode::Passed) return code;
    for (const std::string& settings : {commandLine_, settings_})
      if (const ExitCode code = checkLine(desk, settings); code != ExitCode::Passed) return code;
    if (const ExitCode code = evidence_.check(desk); code != ExitCode::Passed) return code;
    source.job.frameSize = kFrame;
    RunConsole console(desk);
    line_.limit(desk, console);
    OwnNumbering numbers(desk.out, series_.serial, job_.yes);
    return Series(desk, series_, source, console, numbers).program([&](const engine::Job& job) {
      userpath::DemoJob demo{.job = job, .settings = settings_, .command = {}};
      if (!command_.empty()) demo.command = userpath::UserCommand{commandLine_, commandBytes(command_)};
      return evidence_.conduct(
          desk, console, engine::RunKind::Demo, job, traceFieldsOf(demo),
          [&](engine::RunView& view) { return userpath::DemoRun(demo, desk.services(), view).program(); });
    });
  }

 private:
  static constexpr int kFrame = 128;  // data bytes that a routine takes at once
  JobArguments job_;
  LineArguments line_;
  SeriesArguments series_;
  Evidence evidence_;
  std::string settings_ = "38400,e,8,1";
  std::string command_;
  std::string commandLine_ = "9600,n,8,1";
};

}  // namespace

std::unique_ptr<Command> makeDemoCommand() {
  return std::make_unique<DemoCommand>();
}

}  // namespace kvr::cli
