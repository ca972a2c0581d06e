// What one run knows of the chip that it is connected to. Made by the handshake, dropped with the run.
#pragma once

#include <optional>

#include "engine/rc_plan.h"
#include "engine/target_info.h"
#include "options/option_set.h"

namespace kvr::engine {

struct Contact {
  TargetInfo chip;
  options::OptionSet options;           // wanted, and as the chip reported them
  options::OptionBytes optionsTold{};   // the first report
  bool optionsRead = false;             // the pane has shown all of them in this run
  std::optional<options::RcTrim> trim;  // measured registers of the internal oscillator
  RcResult rc;
  int baud = 0;  // bit/s of the data
};

}  // namespace kvr::engine
