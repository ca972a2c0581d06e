#include "cli/text_output.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/text.h"

namespace kvr::cli {
namespace {

constexpr std::string_view kWipe = "\r\x1b[K";
constexpr std::string_view kRed = "\x1b[31m", kPlain = "\x1b[0m";
constexpr int kBar = 24;
constexpr std::array<std::string_view, engine::kStages> kNames = {"Preparing",        "Waiting", "Identifying",
                                                                  "Finding the rate", "Erasing", "Programming",
                                                                  "Finishing",        "Options", "Reporting"};

std::string seconds(double time) {
  return std::to_string(static_cast<long>(time)) + " s";
}

std::string waitText(const StageLine& line) {
  std::string text = "Waiting for the chip: turn its power off and on.  " + seconds(line.seconds);
  return line.limit > 0 ? text + " of " + seconds(line.limit) : text + " (Ctrl-C ends)";
}

std::string bar(double fraction) {
  const auto done = static_cast<std::size_t>(fraction * kBar);
  return "[" + std::string(done, '#') + std::string(kBar - done, '.') + "]";
}

std::string progressText(const StageLine& line) {
  std::string text = "  " + bar(line.fraction) + " " + platform::fixedText(line.fraction * 100, 0) + " %";
  if (line.seconds <= 0 || line.bytes <= 0) return text;
  text += "  " + platform::fixedText(line.bytes / 1024 / line.seconds, 1) + " kB/s";
  if (line.fraction > 0) text += "  " + seconds(line.seconds * (1 - line.fraction) / line.fraction + 0.5) + " left";
  return text;
}

}  // namespace

std::string stageText(const StageLine& line, int width) {
  std::string text;
  if (line.stage == engine::Stage::Wait) {
    text = waitText(line);
  } else {
    text = kNames[static_cast<std::size_t>(line.stage)];
    text += line.fraction < 0 ? "  " + seconds(line.seconds) : progressText(line);
  }
  if (width > 0 && text.size() >= static_cast<std::size_t>(width)) text.resize(static_cast<std::size_t>(width) - 1);
  return text;
}

void TextOutput::wipe() {
  if (drawn_) streams_.err(kWipe);
  drawn_ = false;
}

std::string TextOutput::coloured(std::string_view text, std::string_view colour) const {
  if (!fancy()) return std::string(text);
  return std::string(colour).append(text).append(kPlain);
}

void TextOutput::endLine() {
  wipe();
  if (begun_) streams_.err(std::exchange(held_, {}) + "\n");
  begun_ = false;
}

void TextOutput::say(std::string_view line) {
  if (manner_.quiet) return;
  endLine();
  begun_ = true;
  append(line);
}

void TextOutput::append(std::string_view text) {
  if (manner_.quiet) return;
  begun_ = true;
  if (fancy())
    held_ += text;
  else
    streams_.err(text);
}

void TextOutput::note(std::string_view line) {
  say("kvr: " + std::string(line));
  endLine();
}

void TextOutput::stage(const StageLine& line) {
  if (manner_.quiet || !fancy()) return;
  streams_.err(std::string(kWipe) + stageText(line, streams_.errWidth()));
  drawn_ = true;
}

void TextOutput::frame(const engine::TraceFrame& frame) {
  endLine();
  streams_.err(engine::frameLine(frame) + "\n");
}

void TextOutput::result(std::string_view, const Fields&, std::string_view text) {
  if (text.empty()) return;
  endLine();
  streams_.out(std::string(text) + "\n");
}

// Into a file or a pipe each change is a line; on a terminal all stations have their lines.
void TextOutput::tile(std::size_t, const Fields&, std::string_view line) {
  if (!fancy()) streams_.out(std::string(line) + "\n");
}

void TextOutput::tiles(const std::vector<std::string>& lines) {
  if (!fancy()) return;
  std::string text = tilesDrawn_ > 0 ? "\x1b[" + std::to_string(tilesDrawn_) + "A" : std::string();
  const auto width = static_cast<std::size_t>(std::max(streams_.errWidth(), 2) - 1);
  for (const std::string& line : lines) text += std::string(kWipe) + line.substr(0, width) + "\n";
  tilesDrawn_ = lines.size();
  streams_.err(text);
}

void TextOutput::failure(ExitCode, std::string_view why, std::string_view next) {
  endLine();
  streams_.err("kvr: " + coloured(why, kRed) + "\n");
  if (!next.empty()) streams_.err(std::string(next) + "\n");
}

}  // namespace kvr::cli
