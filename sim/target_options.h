// What kvr-target is told on its command line.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "sim/chip_config.h"
#include "sim/device.h"

namespace sim {

struct TargetOptions {
  std::string device = "chip";  // chip, board or demo
  std::string model = "Ivy-H20S";
  char letter = 0;
  int firmware = 0;
  double clockHz = 11059200;
  std::uint64_t seed = 1;
  bool paced = false;
  int deafMicros = 500;           // after each answer of a chip or a board
  int programMicros = 55;         // that a chip's flash takes for a byte
  double powerOnSeconds = 0;      // after the start and after each power cycle
  double powerCycleSeconds = -1;  // so long after a chip was released or fell silent; below 0: never
  int chips = 1;                  // a fresh one at each power cycle
  bool once = false;              // ends when the last chip has been released
  std::vector<std::pair<std::string, std::string>> faults;
  std::string application;  // what a released chip runs: "", echo, chatter, monitor or trigger
  std::string command;      // hexadecimal bytes that make a trigger firmware reset, or the demo routine start
  Line applicationLine{115200, 'n'};
  Line commandLine{9600, 'n'};
  std::string replayPath;  // of a trace whose device side is played
  std::string replayText;  // what it holds, for whoever has read it
  std::string jsonPath;
  std::string linkPath;
  bool help = false;
};

struct ParsedOptions {
  TargetOptions options;
  std::string error;  // empty when all was understood
};

ParsedOptions parseTargetOptions(const std::vector<std::string_view>& arguments);
std::string targetUsage();

}  // namespace sim
