// Reports for a program: one object a line on standard output (kvr-events.schema.json of docs). Failures go to standard
// error, too, for whoever looks at the program's log.
#pragma once

#include <functional>

#include "cli/output.h"
#include "cli/streams.h"
#include "platform/event_loop.h"

namespace kvr::cli {

class JsonOutput : public Output {
 public:
  static constexpr std::int64_t kVersion = 1;  // of the schema

  // `write` makes an object's text, without line ends.
  JsonOutput(Streams& streams, const platform::EventLoop& loop, bool quiet,
             std::function<std::string(const Fields&)> write)
      : streams_(streams), loop_(loop), quiet_(quiet), write_(std::move(write)), began_(loop.now()) {}
  ~JsonOutput() override { endLine(); }
  void say(std::string_view line) override;
  void append(std::string_view text) override { held_ += text; }
  void note(std::string_view line) override;
  void stage(const StageLine& line) override;
  void frame(const engine::TraceFrame& frame) override;
  void result(std::string_view event, const Fields& fields, std::string_view text) override;
  void tile(std::size_t index, const Fields& fields, std::string_view line) override;
  void tiles(const std::vector<std::string>&) override {}
  void failure(ExitCode code, std::string_view why, std::string_view next) override;

 private:
  void endLine();
  void put(std::string_view event, const Fields& fields);
  Streams& streams_;
  const platform::EventLoop& loop_;
  bool quiet_;  // results and failures only
  std::function<std::string(const Fields&)> write_;
  platform::Instant began_;
  std::string lastStage_;
  std::string held_;  // a message that may not be at its end yet
};

}  // namespace kvr::cli
