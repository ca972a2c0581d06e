#include "cli/series.h"

#include <utility>

#include "cli/checks.h"

#include "cli/outcome_text.h"
#include "engine/batch_log.h"

namespace kvr::cli {
namespace {

constexpr double kLongestDelay = 86400;
constexpr platform::Millis kLookAgain{500};  // whether others have taken the last numbers

std::string folderOf(const std::string& path) {
  const std::size_t slash = path.find_last_of('/');
  return slash == std::string::npos ? "." : slash == 0 ? "/" : path.substr(0, slash);
}

}  // namespace

void SeriesArguments::declare(CLI::App& app) {
  const std::string group = "Several chips";
  auto* number = app.add_option("--count", count, "So many chips, one after the other")
                     ->type_name("N")
                     ->check(quiet(CLI::Range(1, 1000000)))
                     ->group(group);
  app.add_flag("--forever", forever, "Chip after chip until Ctrl-C or a failure")->group(group)->excludes(number);
  app.add_option("--delay", delaySeconds, "Seconds between two chips (4)")
      ->type_name("S")
      ->check(quiet(CLI::Range(0.0, kLongestDelay)))
      ->group(group);
  app.add_flag("--end-with-input", endWithInput, "End when standard input ends; a chip in hand is finished first")
      ->group(group);
  app.add_option("--log", log, "Add a line for each chip to this CSV file")->type_name("FILE")->group(group);
  serial.declare(app);
}

ExitCode Series::program(const Run& run) {
  if (arguments_.endWithInput) desk_.input.watchEnd([this] { desk_.stopper.endAfterChip(Cut::InputClosed); });
  if (const Problem problem = numbers_.start(source_)) return fail(desk_, problem.code, problem.why, problem.next);
  if (!arguments_.log.empty() && !desk_.files.folderExists(folderOf(desk_.files.absolute(arguments_.log))))
    return fail(desk_, ExitCode::File, "There is no folder for the log: " + arguments_.log);
  while (true) {
    if (const auto end = awaitRoom()) return *end;
    const std::optional<ExitCode> code = programOne(run);
    if (!code || (arguments_.forever && numbers_.turnedAway())) continue;
    if (*code == ExitCode::PassedInPart) worst_ = *code;
    if (*code != ExitCode::Passed && *code != ExitCode::PassedInPart) return *code;
    if (++passed_ == arguments_.count.value_or(1) && !arguments_.forever) return worst_;
    if (const auto end = awaitRoom()) return *end;
    if (const ExitCode cut = changeChip(); cut != ExitCode::Passed) return cut;
  }
}

// Nothing: a chip may come. Else there is no number for a further one, or the command was ended, and this is its code.
std::optional<ExitCode> Series::awaitRoom() {
  desk_.stopper.chipInHand(false);
  for (std::string told; desk_.stopper.pending() == Cut::None;) {
    const RoomSeen seen = numbers_.room();
    if (seen.room == records::Room::Now) return std::nullopt;
    const bool inVain = seen.room == records::Room::Never && passed_ == 0;
    if (std::exchange(told, seen.words) != seen.words)
      desk_.out.result("full", fullFields(seen, false), inVain ? std::string() : seen.words);
    if (inVain) return fail(desk_, ExitCode::Refused, seen.words, "`kvr batch show` tells what the batch is.");
    if (seen.room == records::Room::Never) return worst_;
    if (!engine::pause(desk_.services(), kLookAgain)) break;
  }
  return fail(desk_, exitCodeOf(desk_.stopper.pending()), "Stopped between two chips.");
}

// Nothing: no chip has come before others had the last numbers.
std::optional<ExitCode> Series::programOne(const Run& run) {
  platform::Timer look(
      desk_.loop,
      [this] {
        if (!desk_.stopper.hasChip() && !numbers_.roomAtAGlance()) desk_.stopper.endWait();
      },
      platform::Timer::Kind::Periodic);
  look.setInterval(kLookAgain);
  look.start();
  const engine::Outcome outcome = run(source_.job);
  look.stop();
  if (desk_.stopper.takeWaitEnded() && !outcome.chip && desk_.stopper.cut() == Cut::None) return std::nullopt;
  const ExitCode code = writeLog(outcome, tellOutcome(desk_, console_, source_.job, outcome, numbers_.inHand()));
  if (!outcome.passed()) return code;
  const Problem problem = numbers_.next(source_);
  if (!problem) return code;
  return fail(desk_, problem.code, problem.why + " No further chip is programmed.", problem.next);
}

// What has become of a chip that nobody recorded is not known on the next day, so the line ends here.
ExitCode Series::writeLog(const engine::Outcome& outcome, ExitCode code) {
  if (arguments_.log.empty()) return code;
  const auto entry = engine::batchEntry(outcome, desk_.clock.dateTime(), source_.job.model.name(), numbers_.inHand());
  const auto written = engine::appendToBatchLog(desk_.files, arguments_.log, entry);
  if (written) return code;
  const std::string why = "The log could not be written: " + arguments_.log + ": " + written.error;
  if (outcome.passed())
    return fail(desk_, ExitCode::File, why, "The chip is good, and has no line in the log. Make room and add it.");
  desk_.out.note(why);
  return code;
}

// Passed: on to the next one.
ExitCode Series::changeChip() {
  desk_.stopper.chipInHand(false);
  const auto pending = [this] { return desk_.stopper.pending() != Cut::None; };
  if (!pending() && arguments_.delaySeconds > 0)
    desk_.out.note("Change the chip. The next one begins in " + std::to_string(int(arguments_.delaySeconds)) + " s.");
  const auto time = std::chrono::ceil<platform::Millis>(std::chrono::duration<double>(arguments_.delaySeconds));
  if (!pending() && engine::pause(desk_.services(), time) && !pending()) return ExitCode::Passed;
  return fail(desk_, exitCodeOf(desk_.stopper.pending()), "Stopped between two chips.");
}

}  // namespace kvr::cli
