// Reports for a reader: messages and failures on standard error, results on standard output, and on a terminal a line
// that shows how far the stage is.
#pragma once

#include <string>

#include "cli/output.h"
#include "cli/streams.h"

namespace kvr::cli {

struct TextManner {
  bool quiet = false;  // results and failures only
  bool plain = false;  // no colours and no progress line
};

class TextOutput : public Output {
 public:
  TextOutput(Streams& streams, TextManner manner) : streams_(streams), manner_(manner) {}
  ~TextOutput() override { endLine(); }
  void say(std::string_view line) override;
  void append(std::string_view text) override;
  void note(std::string_view line) override;
  void stage(const StageLine& line) override;
  void frame(const engine::TraceFrame& frame) override;
  void result(std::string_view event, const Fields& fields, std::string_view text) override;
  void tile(std::size_t index, const Fields& fields, std::string_view line) override;
  void tiles(const std::vector<std::string>& lines) override;
  void failure(ExitCode code, std::string_view why, std::string_view next) override;

 private:
  bool fancy() const { return !manner_.plain && streams_.errIsTerminal(); }
  void endLine();
  void wipe();
  std::string coloured(std::string_view text, std::string_view colour) const;
  Streams& streams_;
  TextManner manner_;
  bool drawn_ = false;  // the stage's line is on the terminal
  std::size_t tilesDrawn_ = 0;
  bool begun_ = false;  // a line of messages has no end yet
  std::string held_;    // what of it waits for its end: on a terminal the stage's line has its place
};

// The line, at most `width` columns wide: "Program  [#####.....]  48 %  9.6 kB/s  3 s left". Of a stage whose progress
// nobody knows, its name and time.
std::string stageText(const StageLine& line, int width);

}  // namespace kvr::cli
