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

const char* nameOf(engine::RunKind kind) {
  constexpr std::array<const char*, 5> kNames = {"chip", "board", "demo", "trigger", "check"};
  return kNames[static_cast<std::size_t>(kind)];
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
std::string advice(ExitCode code, const engine::Outcome& outcome, const engine::Job& job) {
  switch (code) {
    case ExitCode::Port:
      return "`kvr ports` lists the ports. Close other programs that use it, and look at the cable.";
    case ExitCode::NoChip:
      return "Turn the chip's power off and on while kvr waits, and look at the lines RXD, TXD and GND.";
    case ExitCode::OtherModel:
      return "Name the model that is on the board with --model, or put the right chip in.";
    case ExitCode::Records:
      return "`kvr batch store` tells where the record store is looked for. Program this chip once more.";
    case ExitCode::Refused:
      return engine::measuresOscillator(job) ? "Say the frequency of the internal oscillator with --frequency." : "";
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

Fields outcomeFields(const engine::Outcome& outcome, const engine::Job& job, const std::string& serial, ExitCode code) {
  Fields spent;
  for (std::size_t i = 0; i < engine::kStages; ++i) spent.push_back({kStageNames[i], secondsOf(outcome.spent[i])});
  Fields fields = {{"kind", nameOf(outcome.kind)},
                   {"ending", nameOf(outcome.ending)},
                   {"exitCode", std::int64_t{static_cast<int>(code)}},
                   {"stage", nameOf(outcome.stage)},
                   {"why", platform::trim(outcome.words)},
                   {"model", job.model.name()},
                   {"serial", serial},
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

namespace {

std::string outcomeText(const engine::Outcome& outcome, const engine::Job& job) {
  std::string text = outcome.bytesLeftOut > 0 ? "PASS, PART LEFT OUT" : "PASS";
  text += "  " + job.model.name();
  if (outcome.chip && !outcome.chip->firmware.empty()) text += "  firmware " + outcome.chip->firmware;
  if (outcome.bytesSent > 0) text += "  " + std::to_string(outcome.bytesSent) + " bytes";
  if (outcome.baud > 0) text += " at " + std::to_string(outcome.baud) + " bps";
  text += "  " + platform::fixedText(secondsOf(outcome.sinceAnswer()), 1) + " s";
  if (outcome.bytesLeftOut == 0) return text;
  return text + "\n" + std::to_string(outcome.bytesLeftOut) + " bytes left out, from " + hexOf(outcome.leftOutFrom, 4) +
         "H on";
}

std::string chipText(const engine::ChipSeen& chip, const std::vector<std::string>& report) {
  std::string text = chip.model.empty() ? "An unknown model" : chip.model;
  if (!chip.code.empty()) text += "  code " + chip.code;
  if (!chip.firmware.empty()) text += "  firmware " + chip.firmware;
  if (chip.clockHz > 0) text += "  " + platform::fixedText(chip.clockHz / 1e6, 4) + " MHz";
  text += "\nOption bytes: " + hexOf(chip.optionsBefore);
  for (const std::string& line : report)
    if (!line.empty()) text += "\n" + line;
  return text;
}

std::string textOf(const engine::Outcome& outcome, const engine::Job& job, const std::vector<std::string>& report) {
  if (!outcome.passed()) return {};
  const bool look = outcome.kind == engine::RunKind::Check && outcome.chip;
  return look ? chipText(*outcome.chip, report) : outcomeText(outcome, job);
}

}  // namespace

ExitCode tellOutcome(const Desk& desk, RunConsole& console, const engine::Job& job, const engine::Outcome& outcome,
                     const std::string& serial) {
  const ExitCode code = exitCodeOf(outcome, desk.stopper.cut());
  Fields fields = outcomeFields(outcome, job, serial, code);
  if (outcome.kind == engine::RunKind::Check) fields.push_back({"report", listOf(console.report())});
  desk.out.result("outcome", fields, textOf(outcome, job, console.report()));
  if (outcome.passed()) return code;
  std::string why = platform::trim(outcome.words);
  if (code == ExitCode::NoChip) why = "No chip has answered.";
  if (code == ExitCode::Port && !console.portTrouble().empty()) why += " " + console.portTrouble();
  return fail(desk, code, why, advice(code, outcome, job));
}

}  // namespace kvr::cli
