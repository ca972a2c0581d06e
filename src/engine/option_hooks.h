// What a conversation asks of the option room, which owns the panel and the tables. One that is not connected does
// nothing or answers with the value that stands here.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "engine/target_info.h"
#include "options/option_set.h"

namespace kvr::engine {

// What a report is made of; the option bytes are `OptionSet::reported`.
struct ReportQuestion {
  std::string steppingLetter;
  std::string versionText;
  std::string modelName;  // of the chip; empty: unknown
  std::uint8_t status11 = 0, status12 = 0, status13 = 0;
  bool reservedKnown = false;
};

struct ReportAnswer {
  std::vector<std::string> lines;   // for the message pane
  std::optional<bool> doubleSpeed;  // where the letter tells it
  bool clearStartPair = false;      // the chip does not know of the start pair after all
};

struct OptionHooks {
  // Rebuilds `wanted` and its words from the panel.
  std::function<void(std::optional<options::RcTrim>)> composeOptions;
  // Rebuilds the reported words from `reported`; sets `wanted` to the family's defaults.
  std::function<void()> refreshChoices;
  // Forgets what the panels had read; `reported[16]` from the default table.
  std::function<void()> forgetReported;
  std::function<void()> clearLockLabels;
  // Shows the labels of the report and gives its lines.
  std::function<ReportAnswer(const ReportQuestion&)> report;
  // The pin on which the boot firmware is to feed an external watchdog, as it travels; nothing: none is chosen.
  std::function<std::optional<std::uint8_t>()> externalWatchdogPin;
  std::function<double()> wantedFrequencyHz;  // families 15, 16: what the oscillator is to be trimmed to
  std::function<bool()> checkFrequency;       // false: that box holds no frequency a chip can reach; it has been told
};

}  // namespace kvr::engine
