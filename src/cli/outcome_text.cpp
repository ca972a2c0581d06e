#include "cli/outcome_text.h"

#include <array>

#include "platform/text.h"

namespace kvr::cli {
namespace {

constexpr std::array<const char*, engine::kStages> kStageNames = {"prepare", "wait",   "identify", "baud",  "erase",
                                                                  "program", "finish", "options",  "report"};

const char* nameOf(engine::Ending ending) {
  switch (ending) {
    case engine::Ending::Refused:
      return "refused";
    case engine::Ending::Failed:
      return "failed";
    case engine::Ending::Stopped:
      return "stopped";
    case engine::Ending::Passed:
      return "passed";
    case engine::Ending::PassedInPart:
      return "passed-in-part";
  }
  return "";
}

double secondsOf(platform::Micros time) {
  return std::chrono::duration<double>(time).count();
}

std::string hexOf(std::int32_t value, int digits) {
  return platform::hexText(static_cast<std::uint32_t>(value), digits);
}

std::string hexOf(const options::OptionBytes& bytes) {
  std::string text;
  for (std::size_t i = 0; i < 16; ++i) text += platform::hexText(bytes[i], 2);
  return text;
}

Fields chipFields(const engine::ChipSeen& chip) {
  return {{"model", chip.model},
          {"code", chip.code},
          {"firmware", chip.firmware},
          {"factoryId", chip.factoryId},
          {"clockHz", chip.clockHz},
          {"optionsBefore", hexOf(chip.optionsBefore)},
          {"optionsAfter", hexOf(chip.optionsAfter)}};
}

// What to do next, by how it ended.
std::string advice(ExitCode code, const engine::Outcome& outcome) {
  switch (code) {
    case ExitCode::Port:
      return "`kvr ports` lists the ports. Close other programs that use it, and look at the cable.";
    case ExitCode::NoChip:
      return "Turn the chip's power off and on while kvr waits, and look at the lines RXD, TXD and GND.";
    case ExitCode::OtherModel:
      return "Name the model that is on the board with --model, or put the right chip in.";
    case ExitCode::ChipFailed:
      return outcome.stage >= engine::Stage::Erase
                 ? "The chip may be empty now. Turn its power off and on and program it again, with a lower --max-baud."
                 : "Turn the chip's power off and on and try again, with a lower --max-baud.";
    default:
      return {};
  }
}

}  // namespace

std::string nameOf(engine::Stage stage) {
  return kStageNames[static_cast<std::size_t>(stage)];
}

Fields outcomeFields(const engine::Outcome& outcome, const engine::Job& job, ExitCode code) {
  Fields spent;
  for (std::size_t i = 0; i < engine::kStages; ++i) spent.push_back({kStageNames[i], secondsOf(outcome.spent[i])});
  Fields fields = {{"ending", nameOf(outcome.ending)},
                   {"exitCode", std::int64_t{static_cast<int>(code)}},
                   {"stage", nameOf(outcome.stage)},
                   {"why", platform::trim(outcome.words)},
                   {"model", job.model.name()},
                   {"baud", std::int64_t{outcome.baud}},
                   {"bytesSent", outcome.bytesSent},
                   {"bytesLeftOut", outcome.bytesLeftOut},
                   {"leftOutFrom", std::int64_t{outcome.leftOutFrom}},
                   {"codeSum", std::int64_t{outcome.codeSum}},
                   {"dataSum", std::int64_t{outcome.dataSum}},
                   {"seconds", secondsOf(outcome.sinceAnswer())},
                   {"spent", spent}};
  if (outcome.chip) fields.push_back({"chip", chipFields(*outcome.chip)});
  return fields;
}

std::string outcomeText(const engine::Outcome& outcome, const engine::Job& job) {
  std::string text = outcome.bytesLeftOut > 0 ? "PASS, PART LEFT OUT" : "PASS";
  text += "  " + job.model.name();
  if (outcome.chip && !outcome.chip->firmware.empty()) text += "  firmware " + outcome.chip->firmware;
  text += "  " + std::to_string(outcome.bytesSent) + " bytes";
  if (outcome.baud > 0) text += " at " + std::to_string(outcome.baud) + " bps";
  text += " in " + platform::fixedText(secondsOf(outcome.sinceAnswer()), 1) + " s";
  if (outcome.bytesLeftOut > 0)
    text +=
        "\n" + std::to_string(outcome.bytesLeftOut) + " bytes left out, from " + hexOf(outcome.leftOutFrom, 4) + "H on";
  return text;
}

ExitCode tellOutcome(const Desk& desk, RunConsole& console, const engine::Job& job, const engine::Outcome& outcome) {
  const ExitCode code = exitCodeOf(outcome, desk.stopper.cut());
  desk.out.result("outcome", outcomeFields(outcome, job, code), outcome.passed() ? outcomeText(outcome, job) : "");
  if (outcome.passed()) return code;
  std::string why = platform::trim(outcome.words);
  if (code == ExitCode::NoChip) why = "No chip has answered.";
  if (code == ExitCode::Port && !console.portTrouble().empty()) why += " " + console.portTrouble();
  return fail(desk, code, why, advice(code, outcome));
}

}  // namespace kvr::cli
