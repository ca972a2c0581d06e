#include "sim/chip_config.h"

#include <map>

#include "sim/fault_text.h"

namespace sim {

namespace {

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
  const auto counted = parseCounted(value, 10);
  if (counted) config.faults.failsBlocks.push_back({counted->what, counted->times, counted->silently});
  return counted.has_value();
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

ChipTimes patientTimes() {
  ChipTimes times;
  for (auto* wait : {&times.testReply, &times.changeReply, &times.firstGenerationReply, &times.rcChangeReply})
    *wait = 300 * kMillisecond;
  return times;
}

}  // namespace sim
