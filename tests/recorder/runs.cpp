#include <algorithm>
#include <cstdio>

#include "sim/demo_firmware.h"
#include "tests/recorder/plays.h"
#include "tests/support/models.h"

namespace kvr::recorder {

namespace {

using Play = Record (*)(const McuRecord&, const std::string&);

void addFor(std::vector<Run>& runs, const std::string& kind, const std::vector<const McuRecord*>& models, Play play) {
  for (const McuRecord* row : models)
    runs.push_back(
        {kind + "/" + std::string(row->name), [row, play](const std::string& name) { return play(*row, name); }});
}

void addBoards(std::vector<Run>& runs, const std::vector<const McuRecord*>& models) {
  constexpr int kVersions[] = {0x15, 0x16, 0x17};
  for (const McuRecord* row : models)
    for (const int version : kVersions)
      for (const bool bank : {false, true}) {
        const std::string kind = std::to_string(version / 16) + std::to_string(version % 16) + (bank ? "b" : "");
        runs.push_back({"board/" + kind + "/" + std::string(row->name),
                        [=](const std::string& name) { return boardRun(*row, name, version, bank); }});
      }
}

void addVariants(std::vector<Run>& runs, const std::vector<const McuRecord*>& models) {
  constexpr int kFirmwares[] = {0,    0x39, 0x43, 0x48, 0x49, 0x50, 0x51, 0x53, 0x55,
                                0x56, 0x57, 0x58, 0x5A, 0x62, 0x63, 0x64, 0x66, 0xD5};
  for (const McuRecord* row : models)
    for (const int firmware : kFirmwares)
      runs.push_back({"variant/" + std::string(row->name) + "/" + std::to_string(firmware),
                      [=](const std::string& name) { return variantRun(*row, name, firmware); }});
  for (std::size_t i = 0; i < models.size(); ++i) {
    const McuRecord* const other = models[(i * 7 + 5) % models.size()];
    runs.push_back({"wrong/" + std::string(models[i]->name) + "/" + std::string(other->name),
                    [row = models[i], other](const std::string& name) { return wrongModelRun(*row, name, *other); }});
  }
}

void addTrims(std::vector<Run>& runs, const std::vector<const McuRecord*>& models) {
  for (const McuRecord* row : models)
    for (const char* megahertz : {"5.5296", "11.0592", "18.432", "24", "33.1776", "7.123"})
      for (const char* rate : {"1200", "2400", "9600", "57600"}) {
        const int family = static_cast<int>(row->family);
        if (family < 15 || family > 17) continue;
        runs.push_back({"trim/" + std::string(row->name) + "/" + megahertz + "/" + rate,
                        [=](const std::string& name) { return trimRun(*row, name, megahertz, rate); }});
      }
}

}  // namespace

std::vector<Run> allRuns() {
  const auto models = support::everyModel();
  const auto some = support::endsOfEachFamily([](const McuRecord& row) { return row.listed; });
  std::vector<const McuRecord*> withRoutine;
  std::copy_if(models.begin(), models.end(), std::back_inserter(withRoutine),
               [](const McuRecord* row) { return sim::demoModelNumber(row->name) != 0; });
  std::vector<Run> runs;
  addFor(runs, "model", models, wholeRun);
  addFor(runs, "check", some, checkRun);
  addFor(runs, "fixed", some, fixedLinkRun);
  addFor(runs, "trigger", some, triggerRun);
  addFor(runs, "repeat", some, repeatRun);
  addFor(runs, "demo", withRoutine, demoRun);
  addBoards(runs, some);
  addTrims(runs, some);
  addVariants(runs, some);
  for (int seed = 1; seed <= 2000; ++seed) {
    char name[16];
    std::snprintf(name, sizeof name, "fault/%04d", seed);
    runs.push_back({name, [models](const std::string& run) { return faultyRun(models, run); }});
  }
  return runs;
}

}  // namespace kvr::recorder
