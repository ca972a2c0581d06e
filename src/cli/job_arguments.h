// The arguments that say what a chip shall get, shared by all subcommands that make a job of them.
#pragma once

#include <CLI/CLI.hpp>
#include <optional>
#include <string>
#include <vector>

#include "engine/job.h"
#include "engine/power_switch.h"

namespace kvr::cli {

struct JobArguments {
  std::string model;
  std::string project;
  std::string code;  // path of the code file
  std::string data;
  std::string codeAt = "0", dataAt = "0";  // hexadecimal
  std::vector<std::string> options;        // KEY=VALUE each
  std::optional<double> megahertz;
  std::vector<int> trim = {1, 3, 128};  // by hand: band, step and fine trim, as a fresh window has them
  std::string firstBaud = "2400", highestBaud = "115200";
  bool fixedLink = false;
  engine::PowerSwitch power;
  bool slowAnswers = false;
  bool yes = false;

  void declare(CLI::App& app);             // what the chip gets
  void declareLine(CLI::App& app);         // how the line to it is driven
  void declareSlowAnswers(CLI::App& app);  // a part of it
  void setLine(engine::Job& job) const;
};

}  // namespace kvr::cli
