// The user at the window, with a device at the far end of the line. All that the recorder knows of the program is in
// this file and its .cpp: controls by their names, the pane, the sign. What the program looks like inside may change
// without changing a record.
#pragma once

#include <random>
#include <stdexcept>
#include <string>

#include "tests/recorder/record.h"
#include "tests/support/form_bench.h"

namespace kvr::recorder {

using platform::Millis;

class Operator : public support::FormBench {
 public:
  explicit Operator(sim::WireConfig wireConfig = {});

  // --- Settings ---
  void rates(const std::string& first, const std::string& top) {
    type("cobBaudMin", first);
    type("cobBaudMax", top);
  }
  void chooseOptions(std::mt19937_64& random);
  void tick(const std::string& name) { control<platform::CheckBox>(name).userSet(true); }
  void choose(const std::string& name, int index) { control<platform::OptionButton>(name, index).userChoose(); }
  void type(const std::string& name, const std::string& text, int index = platform::Control::kSingle);

  // --- Devices ---
  void runProgramOfChip(const sim::Line& line, const sim::Bytes& command);  // it jumps to the boot firmware by command

  // --- A run ---
  // Presses the button and waits for the end of what it starts; at the limit Stop is pressed.
  void pressAndWait(const std::string& name, int index, Millis limit);
  void stop() { control<platform::Button>(demo ? "com_Demo_Stop" : "comStop_Download").press(); }
  void every(Millis time, std::function<bool()> act);  // until it answers false
  int goodChips() { return std::stoi("0" + control<platform::TextBox>("txtWrite_OK_Count").trimmed()); }
  void keepMemory();  // of the chip, before another takes its place
  Record takeRecord();

 private:
  template <class T>
  T& control(const std::string& name, int index = platform::Control::kSingle) {
    T* found = form.registry.findAs<T>(name, index);
    if (!found) throw std::runtime_error("no such control: " + name);
    return *found;
  }
  void watchPane();

  Record record_;
  std::string pane_;
};

}  // namespace kvr::recorder
