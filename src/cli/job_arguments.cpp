#include "cli/job_arguments.h"

#include "cli/checks.h"
#include "platform/text.h"

namespace kvr::cli {
namespace {

CLI::Validator rates() {
  return quiet(CLI::IsMember({"1200", "2400", "4800", "9600", "14400", "19200", "28800", "38400", "57600", "115200"}));
}

}  // namespace

void JobArguments::declare(CLI::App& app) {
  const std::string what = "What the chip gets";
  auto* model_ =
      app.add_option("--model", model, "Model of the chip; kvr models lists them")->type_name("NAME")->group(what);
  auto* project_ =
      app.add_option("--project", project, "Project file: model, options and images")->type_name("FILE")->group(what);
  auto* code_ = app.add_option("code", code, "Code file, Intel HEX or binary")->type_name("CODE");
  auto* data_ = app.add_option("--data", data, "File for the Data Memory")->type_name("FILE")->group(what);
  app.add_option("--code-at", codeAt, "Address of the code file's first byte")->type_name("HEX")->group(what);
  app.add_option("--data-at", dataAt, "Address of the data file's first byte")->type_name("HEX")->group(what);
  app.add_option("--option", options, "An option of the chip; kvr options MODEL lists them")
      ->type_name("KEY=VALUE")
      ->allow_extra_args(false)
      ->group(what);
  app.add_option("--frequency", megahertz, "Of the internal oscillator, 4.5 to 45")->type_name("MHZ")->group(what);
  app.add_option("--trim", trim, "Of an oscillator trimmed by hand: band 0-3, step 0-63, fine 0-255 (1,3,128)")
      ->type_name("BAND,STEP,FINE")
      ->expected(3)
      ->delimiter(',')
      ->check(quiet(CLI::Range(0, 255)))
      ->group(what);
  app.add_flag("-y,--yes", yes, "Answer the questions about files and ranges with yes")->group(what);
  project_->excludes(model_, code_, data_);
}

void JobArguments::declareLine(CLI::App& app) {
  const std::string line = "The line";
  app.add_option("--min-baud", firstBaud, "Rate of the first contact (2400)")
      ->type_name("N")
      ->check(rates())
      ->group(line);
  app.add_option("--max-baud", highestBaud, "Highest rate of the data (115200)")
      ->type_name("N")
      ->check(rates())
      ->group(line);
  const auto take = [this](const std::string& text) {
    const auto read = engine::powerSwitchOf(text);
    if (!read) throw CLI::ValidationError("--power", "write it as dtr or rts, :low and :MS after it, 50 to 5000 ms");
    power = *read;
  };
  app.add_option_function<std::string>("--power", take, "The adapter's line that switches the chip's power")
      ->type_name("dtr|rts[:low][:MS]")
      ->group(line);
  app.add_flag("--fixed-link", fixedLink, "115200 from the first byte on")->group(line);
  declareSlowAnswers(app);
}

void JobArguments::declareSlowAnswers(CLI::App& app) {
  app.add_flag("--slow-answers", slowAnswers, "Leave chip or board 10 ms after each of its answers")->group("The line");
}

void JobArguments::setLine(engine::Job& job) const {
  job.firstBaud = platform::wholeOf(firstBaud);
  job.highestBaud = platform::wholeOf(highestBaud);
  job.fixedLink = fixedLink;
  job.power = power;
  job.turnRound = slowAnswers ? engine::kFullTurnRound : engine::kShortTurnRound;
  job.frameSize = engine::frameSizeOf(job.record(), fixedLink);
}

}  // namespace kvr::cli
