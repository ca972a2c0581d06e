#include "download/run_picture.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "platform/text.h"

namespace kvr::download {
namespace {

using engine::Setback;
using engine::Stage;
using platform::Micros;

constexpr std::array<const char*, engine::kStages> kNames = {"Prepare", "Wait",   "Identify", "Baud",  "Erase",
                                                             "Program", "Finish", "Options",  "Report"};

Micros spentIn(const engine::Outcome& outcome, Stage stage) {
  return outcome.spent[static_cast<std::size_t>(stage)];
}

std::string fixed(double value, int digits) {
  std::array<char, 32> text{};
  const int length = std::snprintf(text.data(), text.size(), "%.*f", digits, value);
  return {text.data(), static_cast<std::size_t>(std::max(length, 0))};
}

const char* meaningOf(Setback what) {
  switch (what) {
    case Setback::BlockAgain:
      return "block sent again";
    case Setback::RateRefused:
      return "rate not taken";
    case Setback::EraseAgain:
      return "erase asked for again";
    case Setback::PortLost:
      break;
  }
  return "port lost";
}

std::string endingOf(const engine::Outcome& outcome) {
  if (outcome.ending == engine::Ending::PassedInPart) return "PASS, PART LEFT OUT";
  if (outcome.ending == engine::Ending::Stopped) return "STOPPED";
  return outcome.passed() ? "PASS" : "FAIL";
}

std::string figuresOf(const engine::Outcome& outcome) {
  std::string text =
      secondsText(outcome.sinceAnswer()) + " after " + secondsText(spentIn(outcome, Stage::Wait)) + " of waiting";
  const double seconds = std::chrono::duration<double>(spentIn(outcome, Stage::Program)).count();
  const double kilobytes = static_cast<double>(outcome.bytesSent) / 1024;
  if (outcome.bytesSent > 0) text += ", " + fixed(kilobytes, 1) + " kB";
  if (outcome.bytesSent > 0 && seconds > 0) text += ", " + fixed(kilobytes / seconds, 2) + " kB/s";
  if (outcome.baud > 0) text += ", at " + std::to_string(outcome.baud) + " baud";
  return text;
}

}  // namespace

RunPicture pictureOf(const RunRecord& run) {
  const engine::Outcome& outcome = run.outcome;
  RunPicture picture{.title = run.time + "  " + run.model + "  " + endingOf(outcome),
                     .figures = figuresOf(outcome),
                     .failure = platform::trim(outcome.words),
                     .length = outcome.sinceAnswer()};
  Micros at{0};
  for (auto i = static_cast<std::size_t>(Stage::Identify); i < engine::kStages; ++i) {
    const Micros length = outcome.spent[i];
    if (length > Micros(0)) picture.bars.push_back({static_cast<Stage>(i), kNames[i], at, length});
    at += length;
  }
  const Micros answer = spentIn(outcome, Stage::Prepare) + spentIn(outcome, Stage::Wait);
  for (const engine::SetbackAt& setback : outcome.setbacks)
    picture.marks.push_back({meaningOf(setback.what), setback.what == Setback::PortLost,
                             std::clamp(setback.at - answer, Micros(0), picture.length)});
  if (!outcome.passed()) picture.marks.push_back({"end", true, picture.length});
  return picture;
}

std::string secondsText(Micros time) {
  const double seconds = std::chrono::duration<double>(time).count();
  return fixed(seconds, seconds < 10 ? 2 : seconds < 100 ? 1 : 0) + " s";
}

Micros axisStep(Micros length) {
  Micros decade(1000);
  for (;; decade *= 10)
    for (const int times : {1, 2, 5})
      if (decade * times * 10 >= length) return decade * times;
}

}  // namespace kvr::download
