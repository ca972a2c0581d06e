// The user at the window, with a device at the far end of the line. All that the recorder knows of the program is in
// this file and its .cpp: controls by their names, the pane, the sign. What the program looks like inside may change
// without changing a record.
#pragma once

#include <memory>
#include <random>
#include <string>

#include "sim/board.h"
#include "sim/demo_firmware.h"
#include "tests/recorder/record.h"
#include "tests/support/form_bench.h"

namespace kvr::recorder {

using platform::Millis;

class Operator {
 public:
  explicit Operator(sim::WireConfig wireConfig = {});
  ~Operator() { bench_.wire.connect(nullptr); }
  Operator(const Operator&) = delete;
  Operator& operator=(const Operator&) = delete;

  // --- Settings ---
  void select(std::string_view model) { bench_.select(std::string(model)); }
  void rates(const std::string& first, const std::string& top) {
    type("cobBaudMin", first);
    type("cobBaudMax", top);
  }
  void loadCode(const platform::Bytes& bytes) { bench_.loadCode(bytes); }
  void loadData(const platform::Bytes& bytes) { bench_.loadData(bytes); }
  void chooseOptions(std::mt19937_64& random);
  void tick(const std::string& name);
  void choose(const std::string& name, int index);
  void type(const std::string& name, const std::string& text, int index = platform::Control::kSingle);

  // --- Devices ---
  void insertChip(const sim::ChipConfig& config, Millis after = Millis(100)) { bench_.insertChip(config, after); }
  sim::Chip& chip() { return *bench_.chip; }
  void runProgramOfChip(const sim::Line& line, const sim::Bytes& command);  // it jumps to the boot firmware by command
  void connectBoard(const sim::BoardConfig& config, Millis after);
  void connectDemo(const sim::DemoConfig& config);

  // --- A run ---
  // Presses the button and waits for the end of what it starts; at the limit Stop is pressed.
  void press(const std::string& name, int index, Millis limit);
  void stop();
  void every(Millis time, std::function<bool()> act);  // until it answers false
  std::string signName() const;
  int goodChips() const;
  void keepMemory();  // of the chip, before another takes its place
  Record takeRecord();

 private:
  void watchPane();

  std::unique_ptr<sim::Board> board_;
  std::unique_ptr<sim::DemoFirmware> demo_;
  support::FormBench bench_;
  Record record_;
  std::string pane_;
  std::string stopButton_ = "comStop_Download";
};

}  // namespace kvr::recorder
