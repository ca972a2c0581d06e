// The command on a bench: its core in the virtual world, with a simulated device on its port.
#pragma once

#include <string>
#include <vector>

#include "cli/arguments.h"
#include "cli/text_output.h"
#include "platform/virtual/plain_codec.h"
#include "tests/support/virtual_world.h"

namespace kvr::cli {

struct BenchPorts : Ports {
  PortsSeen look() override { return seen; }
  bool exists(const std::string& device) const override { return device == "/dev/ttyV0"; }
  void use(const std::string& device) override { used = device; }
  PortsSeen seen{{{.device = "/dev/ttyV0", .usb = true, .vendor = 0x1A86, .product = 0x7523}}, {}};
  std::string used;
};

struct BenchStreams : Streams {
  void out(std::string_view text) override { written += text; }
  void err(std::string_view text) override { told += text; }
  bool errIsTerminal() const override { return terminal; }
  int errWidth() const override { return 80; }
  std::string written, told;
  bool terminal = false;
};

// Sees the notes and results as they come.
struct BenchOutput : TextOutput {
  using TextOutput::TextOutput;
  void note(std::string_view line) override {
    TextOutput::note(line);
    if (onNote) onNote(line);
  }
  void result(std::string_view event, const Fields& fields, std::string_view text) override {
    TextOutput::result(event, fields, text);
    results.emplace_back(event, fields);
    if (onResult) onResult(event);
  }
  std::function<void(std::string_view)> onNote, onResult;
  std::vector<std::pair<std::string, Fields>> results;
};

// A machine without a record store.
struct NoRecords : records::RecordDesk {
  std::string location() const override { return "nowhere"; }
  std::string keepLocation(const std::string&) override { return "read-only"; }
  records::Stored<std::unique_ptr<records::RecordStore>> open(const std::string&) override {
    return {.value = {}, .fault = {records::StoreFault::Kind::Unreachable, "There is no store."}};
  }
  std::unique_ptr<records::WaitingRoom> waitingFor(const std::string&) const override { return nullptr; }
  std::string utcNow() const override { return "2026-11-23T21:40:00Z"; }
  std::string newRun() const override { return "run"; }
};

struct BenchInput : Input {
  void watchEnd(std::function<void()> handler) override { ended = std::move(handler); }
  std::function<void()> ended;
};

struct CliBench : support::VirtualWorld {
  explicit CliBench(sim::WireConfig config = {}) : VirtualWorld(std::move(config)) {}

  // An ordinary chip of the model, which powers up 100 ms from now.
  sim::Chip& insertModel(const std::string& model, std::uint64_t seed = 1) {
    return insertChip(sim::configFor(*catalogue::findByName(model), 11059200, seed));
  }
  int run(const std::vector<std::string>& words) {
    Arguments arguments;
    if (!arguments.read(words)) {
      (arguments.code() == ExitCode::Passed ? streams.written : streams.told) += arguments.text();
      return static_cast<int>(arguments.code());
    }
    const Desk desk{loop,    files,  clock, codec,  ports, lease,
                    stopper, tracer, out,   *books, input, arguments.manner().verbose};
    return static_cast<int>(arguments.command().run(desk));
  }
  bool says(std::string_view words) const { return streams.told.find(words) != std::string::npos; }
  bool writes(std::string_view words) const { return streams.written.find(words) != std::string::npos; }

  platform::PlainCodec codec;
  NoRecords noRecords;
  records::RecordDesk* books = &noRecords;
  BenchInput input;
  BenchPorts ports;
  BenchStreams streams;
  BenchOutput out{streams, {}};
  engine::RunTracer tracer{loop, clock, link};
  engine::PortLease lease{loop, tracer.link()};
  Stopper stopper{lease};
};

// The words of a command line, parted by blanks.
inline std::vector<std::string> wordsOf(const std::string& line) {
  std::istringstream text(line);
  return {std::istream_iterator<std::string>(text), {}};
}

}  // namespace kvr::cli
