#include "sim/chip_config.h"

#include <map>

#include "sim/fault_text.h"

namespace sim {

namespace {

std::map<std::string_view, bool*> flagsOf(ChipConfig& config) {
  ChipFaults& f = config.faults;
  return {{"dropsFinishReply", &f.dropsFinishReply},
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
          {"cutMeasureReply", &f.cutMeasureReply},
          {"silentRcBaud", &f.silentRcBaud},
          {"shortStatus", &config.shortStatus},
          {"directStatus", &config.directStatus},
          {"shortDataReplies", &config.shortDataReplies}};
}

std::map<std::string_view, int*> countsOf(ChipConfig& config) {
  ChipFaults& f = config.faults;
  return {{"refusesBaudTests", &f.refusesBaudTests},
          {"diesAfterBlocks", &f.diesAfterBlocks},
          {"answersOptionsWith81", &f.answersOptionsWith81}};
}

constexpr std::string_view kBlockFailure = "failsBlock";

bool addBlockFailure(ChipConfig& config, std::string_view value) {
  const auto counted = parseCounted(value, 10);
  if (counted) config.faults.failsBlocks.push_back({counted->what, counted->times, counted->silently});
  return counted.has_value();
}

}  // namespace

bool setChipFault(ChipConfig& config, std::string_view name, std::string_view value) {
  const auto flags = flagsOf(config);
  if (const auto flag = flags.find(name); flag != flags.end()) {
    if (!value.empty() && value != "1") return false;
    *flag->second = true;
    return true;
  }
  const auto counts = countsOf(config);
  if (const auto count = counts.find(name); count != counts.end())
    return toNumber(value.empty() ? "1" : value, *count->second);
  return name == kBlockFailure && addBlockFailure(config, value);
}

std::vector<FaultName> chipFaultNames() {
  ChipConfig any;
  std::vector<FaultName> names = {{kBlockFailure, FaultValue::block}};
  for (const auto& [name, flag] : flagsOf(any)) names.push_back({name, FaultValue::none});
  for (const auto& [name, count] : countsOf(any)) names.push_back({name, FaultValue::count});
  return names;
}

ChipTimes patientTimes() {
  ChipTimes times;
  for (auto* wait : {&times.testReply, &times.changeReply, &times.firstGenerationReply, &times.rcChangeReply})
    *wait = 300 * kMillisecond;
  return times;
}

}  // namespace sim
