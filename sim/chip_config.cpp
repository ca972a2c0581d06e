#include "sim/chip_config.h"

#include <charconv>
#include <map>

namespace sim {

namespace {

bool toNumber(std::string_view text, int& number) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size();
}

bool* flagOf(ChipConfig& config, std::string_view name) {
  ChipFaults& f = config.faults;
  const std::map<std::string_view, bool*> flags = {{"dropsFinishReply", &f.dropsFinishReply},
                                                   {"wrongFinishReply", &f.wrongFinishReply},
                                                   {"silentErase", &f.silentErase},
                                                   {"wrongEraseReply", &f.wrongEraseReply},
                                                   {"wrongStageReply", &f.wrongStageReply},
                                                   {"silentStage", &f.silentStage},
                                                   {"passesTestNotChange", &f.passesTestNotChange},
                                                   {"silentOptions", &f.silentOptions},
                                                   {"optionsDoNotStick", &f.optionsDoNotStick},
                                                   {"silentStatusRead", &f.silentStatusRead},
                                                   {"wrongModelCode", &f.wrongModelCode},
                                                   {"oldFirmware", &f.oldFirmware},
                                                   {"idReadFails", &f.idReadFails},
                                                   {"silentMeasure", &f.silentMeasure},
                                                   {"wrongMeasureReply", &f.wrongMeasureReply},
                                                   {"emptyMeasureReply", &f.emptyMeasureReply},
                                                   {"silentRcBaud", &f.silentRcBaud},
                                                   {"shortStatus", &config.shortStatus},
                                                   {"directStatus", &config.directStatus},
                                                   {"shortDataReplies", &config.shortDataReplies}};
  const auto it = flags.find(name);
  return it == flags.end() ? nullptr : it->second;
}

int* countOf(ChipConfig& config, std::string_view name) {
  if (name == "refusesBaudTests") return &config.faults.refusesBaudTests;
  if (name == "diesAfterBlocks") return &config.faults.diesAfterBlocks;
  if (name == "answersOptionsWith81") return &config.faults.answersOptionsWith81;
  return nullptr;
}

bool addBlockFailure(ChipConfig& config, std::string_view value) {
  BlockFailure failure;
  const std::size_t colon = value.find(':');
  if (colon == std::string_view::npos || !toNumber(value.substr(0, colon), failure.block)) return false;
  std::string_view rest = value.substr(colon + 1);
  if (const std::size_t second = rest.find(':'); second != std::string_view::npos) {
    failure.silently = rest.substr(second + 1) == "silent";
    if (!failure.silently) return false;
    rest = rest.substr(0, second);
  }
  if (!toNumber(rest, failure.times)) return false;
  config.faults.failsBlocks.push_back(failure);
  return true;
}

}  // namespace

bool setChipFault(ChipConfig& config, std::string_view name, std::string_view value) {
  if (bool* flag = flagOf(config, name)) {
    if (!value.empty() && value != "1") return false;
    *flag = true;
    return true;
  }
  if (int* count = countOf(config, name)) return toNumber(value.empty() ? "1" : value, *count);
  return name == "failsBlock" && addBlockFailure(config, value);
}

}  // namespace sim
