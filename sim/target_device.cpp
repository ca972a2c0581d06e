#include "sim/target_device.h"

#include <algorithm>
#include <cctype>

#include "sim/board.h"
#include "sim/chip.h"
#include "sim/demo_firmware.h"
#include "sim/json.h"
#include "sim/monitor_firmware.h"
#include "sim/replay_device.h"

namespace sim {

namespace {

double seconds(Micros micros) {
  return static_cast<double>(micros) / kSecond;
}

class ChipTarget : public TargetDevice {
 public:
  explicit ChipTarget(const ChipConfig& config) : chip_(config) {}
  Chip& chip() { return chip_; }
  Device& device() override { return chip_; }
  void powerOn(Micros at) override { chip_.powerOn(at); }
  void powerOff(Micros at) override { chip_.powerOff(at); }
  int releases() const override { return chip_.releases(); }
  bool inSession() const override { return chip_.state() == ChipState::session || chip_.state() == ChipState::greeted; }

  char parityOf(int baud, std::span<const std::uint8_t> next) const override {
    if (const auto line = chip_.line()) return line->parity;
    if (baud == 115200 && !next.empty() && next[0] == 0xFE) return 'n';  // the fixed link has none, whatever the family
    return !chip_.row().parityUsed ? 'n' : chip_.row().parityEven ? 'e' : 'o';
  }

  std::string report() const override {
    const FlashMemory& memory = chip_.memory();
    return JsonObject()
        .text("device", "chip")
        .text("model", chip_.row().name)
        .text("letter", std::string(1, chip_.letter()))
        .number("firmware", chip_.firmware())
        .text("state", nameOf(chip_.state()))
        .number("clockHz", chip_.clockHz())
        .number("applicationClockHz", chip_.applicationClockHz())
        .number("sessions", chip_.sessions())
        .number("releases", chip_.releases())
        .number("erases", chip_.erases())
        .number("dataFrames", chip_.dataFrames())
        .number("blocksDone", chip_.blocksDone())
        .number("optionWrites", chip_.optionWrites())
        .number("unerasedWrites", static_cast<double>(memory.unerasedWrites()))
        .number("watchdogPin", chip_.watchdogPin().value_or(-1))
        .number("statedSeconds", seconds(chip_.journal().statedTotal()))
        .notes("violations", chip_.violations())
        .notes("log", chip_.journal().notes())
        .hex("options", chip_.options())
        .hex("factoryId", chip_.factoryId())
        .hex("flash", memory.bytes())
        .str();
  }

 private:
  Chip chip_;
};

class BoardTarget : public TargetDevice {
 public:
  BoardTarget(const BoardConfig& config, const McuRecord& row, int chips) : board_(config), row_(row), chips_(chips) {}
  Device& device() override { return board_; }
  void powerOn(Micros at) override { board_.powerOn(at); }
  void powerOff(Micros at) override { board_.powerOff(at); }
  int releases() const override { return board_.loads(); }
  bool inSession() const override { return board_.stage() > 0; }
  // Only the wake frame comes with parity.
  char parityOf(int, std::span<const std::uint8_t> next) const override {
    return next.size() > 5 && next[5] == 0xF0 ? 'e' : 'n';
  }

  std::string report() const override {
    BoardMemory memory = board_.memory();
    BoardJob job(memory, board_.tailWritten());
    JsonObject object;
    object.text("device", "board")
        .text("model", row_.name)
        .number("version", board_.config().version)
        .flag("on", board_.on())
        .number("loads", board_.loads())
        .number("pagesDone", board_.pagesDone())
        .number("chipsLeft", static_cast<double>(job.remaining()))
        .notes("violations", board_.violations())
        .notes("log", board_.journal().notes())
        .hex("memory", memory.main)
        .hex("secondBank", memory.second);
    std::vector<std::string> programmed;
    for (int i = 0; board_.loads() > 0 && i < chips_; ++i) programmed.push_back(programOne(job, i));
    return object.list("programmed", programmed).str();
  }

 private:
  // What the board would make of the next chip, tried on a copy of its memory.
  std::string programOne(BoardJob& job, int index) const {
    FlashMemory chip(static_cast<std::size_t>(row_.bootEnd) + 1, static_cast<std::size_t>(bootStartOf(row_)),
                     static_cast<std::uint64_t>(index) + 1);
    const BoardRun run = job.programNext(chip);
    return JsonObject()
        .flag("done", run.done)
        .text("why", run.why)
        .number("leftOut", static_cast<double>(run.leftOut))
        .hex("options", run.options)
        .hex("flash", chip.bytes())
        .str();
  }

  Board board_;
  const McuRecord& row_;
  int chips_;
};

class DemoTarget : public TargetDevice {
 public:
  explicit DemoTarget(const DemoConfig& config) : demo_(config) {}
  Device& device() override { return demo_; }
  void powerOn(Micros at) override { demo_.powerOn(at); }
  void powerOff(Micros at) override { demo_.powerOff(at); }
  int releases() const override { return demo_.rounds(); }
  bool inSession() const override { return false; }
  char parityOf(int, std::span<const std::uint8_t>) const override { return demo_.line()->parity; }

  std::string report() const override {
    return JsonObject()
        .text("device", "demo")
        .text("model", demo_.row().name)
        .flag("inRoutine", demo_.inRoutine())
        .number("commands", demo_.commands())
        .number("connects", demo_.connects())
        .number("rounds", demo_.rounds())
        .number("dataFrames", demo_.dataFrames())
        .notes("violations", demo_.violations())
        .notes("log", demo_.journal().notes())
        .hex("flash", demo_.memory().bytes())
        .str();
  }

 private:
  DemoFirmware demo_;
};

class ReplayTarget : public TargetDevice {
 public:
  explicit ReplayTarget(TraceScript script) : replay_(std::move(script)) {}
  Device& device() override { return replay_; }
  void powerOn(Micros at) override { replay_.powerOn(at); }
  void powerOff(Micros at) override { replay_.powerOff(at); }
  int releases() const override { return replay_.plays(); }
  bool inSession() const override { return replay_.begun(); }
  char parityOf(int, std::span<const std::uint8_t>) const override { return 'n'; }  // a trace has whole bytes

  std::string report() const override {
    return JsonObject()
        .text("device", "replay")
        .text("model", replay_.model())
        .number("plays", replay_.plays())
        .text("difference", replay_.difference())
        .str();
  }

 private:
  ReplayDevice replay_;
};

Bytes hexBytes(const std::string& text) {
  Bytes bytes;
  std::string digits;
  for (const char c : text)
    if (std::isxdigit(static_cast<unsigned char>(c))) digits += c;
  for (std::size_t i = 0; i + 1 < digits.size(); i += 2)
    bytes.push_back(static_cast<std::uint8_t>(std::stoi(digits.substr(i, 2), nullptr, 16)));
  return bytes;
}

std::unique_ptr<Application> makeApplication(const TargetOptions& options) {
  if (options.application == "echo") return std::make_unique<EchoApplication>(options.applicationLine);
  if (options.application == "chatter") return std::make_unique<ChatterApplication>(options.applicationLine);
  if (options.application == "monitor") {
    MonitorConfig config;
    config.faults = {BadFrame::none, BadFrame::badSum, BadFrame::none, BadFrame::cutShort, BadFrame::unknownType};
    return std::make_unique<MonitorApplication>(options.applicationLine, config);
  }
  return std::make_unique<TriggerApplication>(options.applicationLine, hexBytes(options.command));
}

// Turns on every fault that was asked for; the name of the first that is not known otherwise.
template <class Config, class Setter>
bool applyFaults(const TargetOptions& options, Config& config, Setter set, std::string& error) {
  for (const auto& [name, value] : options.faults) {
    if (set(config, name, value)) continue;
    error = "no fault " + name + (value.empty() ? "" : " with value " + value);
    return false;
  }
  return true;
}

std::unique_ptr<TargetDevice> makeChip(const TargetOptions& options, const McuRecord& row, int index,
                                       std::string& error) {
  ChipConfig config = configFor(row, options.clockHz, options.seed + static_cast<std::uint64_t>(index));
  config.letter = options.letter;
  config.firmware = options.firmware;
  // The host closes and opens its port on the way to another rate, on a machine that may have more to do.
  config.times = patientTimes();
  config.times.deaf = options.deafMicros;
  config.times.programByte = options.programMicros;
  if (!applyFaults(options, config, setChipFault, error)) return nullptr;
  auto target = std::make_unique<ChipTarget>(config);
  if (!options.application.empty()) target->chip().setApplication(makeApplication(options));
  return target;
}

std::unique_ptr<TargetDevice> makeBoard(const TargetOptions& options, const McuRecord& row, std::string& error) {
  BoardConfig config;
  config.deaf = options.deafMicros;
  if (!applyFaults(options, config, setBoardFault, error)) return nullptr;
  return std::make_unique<BoardTarget>(config, row, options.chips);
}

std::unique_ptr<TargetDevice> makeDemo(const TargetOptions& options, const McuRecord& row, int index,
                                       std::string& error) {
  DemoConfig config;
  config.row = &row;
  config.seed = options.seed + static_cast<std::uint64_t>(index);
  config.downloadLine = options.applicationLine;
  config.commandLine = options.commandLine;
  config.command = hexBytes(options.command);
  if (!applyFaults(options, config, setDemoFault, error)) return nullptr;
  return std::make_unique<DemoTarget>(config);
}

std::unique_ptr<TargetDevice> makeReplay(const TargetOptions& options, std::string& error) {
  TraceScript script = readTraceScript(options.replayText);
  if (script.error.empty() && script.steps.empty()) script.error = "nothing went over the line";
  if (!script.error.empty()) {
    error = options.replayPath + ": " + script.error;
    return nullptr;
  }
  return std::make_unique<ReplayTarget>(std::move(script));
}

}  // namespace

std::unique_ptr<TargetDevice> makeTargetDevice(const TargetOptions& options, int index, std::string& error) {
  if (options.device == "replay") return makeReplay(options, error);
  const McuRecord* row = kvr::catalogue::findByName(options.model);
  if (!row) {
    error = "no model " + options.model;
    return nullptr;
  }
  if (options.application == "trigger" && hexBytes(options.command).empty()) {
    error = "a trigger firmware needs --command";
    return nullptr;
  }
  if (options.device == "chip") return makeChip(options, *row, index, error);
  if (options.device == "board") return makeBoard(options, *row, error);
  return makeDemo(options, *row, index, error);
}

}  // namespace sim
