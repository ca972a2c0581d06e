#include "tests/recorder/runs.h"

#include <algorithm>
#include <cstdio>
#include <map>
#include <set>

#include "catalogue/mcu_record.h"
#include "tests/recorder/operator.h"

namespace kvr::recorder {

namespace {

using catalogue::McuRecord;
using Random = std::mt19937_64;

constexpr double kClocks[] = {11059200, 22118400, 18432000, 6000000, 12000000, 24000000, 33177600};
constexpr const char* kFirstRates[] = {"2400", "1200", "9600", "4800"};
constexpr const char* kTopRates[] = {"115200", "115200", "57600", "38400", "19200"};
constexpr sim::Line kUserLine{19200, 'o', 7, 2};

template <class T, std::size_t N>
T pick(const T (&from)[N], Random& random) {
  return from[random() % N];
}

platform::Bytes randomBytes(Random& random, std::size_t size) {
  platform::Bytes bytes(size);
  for (auto& byte : bytes) byte = static_cast<std::uint8_t>(random());
  return bytes;
}

std::size_t codeSize(const McuRecord& row) {
  return static_cast<std::size_t>(row.apEnd) + 1;
}

// Both images; `most` bytes of code at most.
void loadImages(Operator& person, const McuRecord& row, Random& random, std::size_t most) {
  person.loadCode(randomBytes(random, std::min(codeSize(row), most)));
  if (!catalogue::hasDataFile(row)) return;
  const auto room = static_cast<std::size_t>(row.dataEnd - row.dataStart) + 1;
  person.loadData(randomBytes(random, std::min(room, most)));
}

Record wholeRun(const McuRecord& row, const std::string& name) {
  Random random(hashOf(name));
  Operator person;
  person.select(row.name);
  person.rates(pick(kFirstRates, random), pick(kTopRates, random));
  loadImages(person, row, random, random() % 2 == 0 ? codeSize(row) : 1 + random() % 5000);
  person.chooseOptions(random);
  person.insertChip(sim::configFor(row, pick(kClocks, random), random()), Millis(random() % 1000));
  person.press("comDownload", 0);
  return person.takeRecord();
}

Record checkRun(const McuRecord& row, const std::string& name) {
  Random random(hashOf(name));
  Operator person;
  person.select(row.name);
  person.rates("9600", "115200");
  person.insertChip(sim::configFor(row, pick(kClocks, random), random()));
  person.press("comReadChipLock", platform::Control::kSingle, Millis(20000));
  return person.takeRecord();
}

Record fixedLinkRun(const McuRecord& row, const std::string& name) {
  Random random(hashOf(name));
  Operator person;
  person.select(row.name);
  person.rates("9600", "115200");
  loadImages(person, row, random, 1500);
  person.insertChip(sim::configFor(row, 11059200, random()));
  person.press("Command2", platform::Control::kSingle, Millis(60000));
  return person.takeRecord();
}

Record triggerRun(const McuRecord& row, const std::string& name) {
  Random random(hashOf(name));
  Operator person;
  person.select(row.name);
  person.rates("9600", "115200");
  loadImages(person, row, random, 1500);
  person.insertChip(sim::configFor(row, 11059200, random()));
  person.runProgramOfChip(kUserLine, {0x12, 0x34, 0x56});
  person.type("txtUserCode", "12 34 56");
  person.type("cobUserCodeBaud", "19200");
  person.type("cobUserCodeParity", "Odd");
  person.type("cobUserCodeDataBits", "7");
  person.type("cobUserCodeStopBits", "2");
  person.press("comSendUserCode", platform::Control::kSingle, Millis(120000));
  return person.takeRecord();
}

// Serial values of four bytes, 5 from chip to chip, and options that differ from what the chip holds.
Record repeatRun(const McuRecord& row, const std::string& name) {
  Random random(hashOf(name));
  Operator person;
  person.select(row.name);
  person.rates("9600", "115200");
  loadImages(person, row, random, 1500);
  person.choose("optAuto_Increase", 0);
  int box = 0;
  for (const char* text : {"0103", "4", "100", "5"}) person.type("texAuto_Increase", text, box++);
  person.tick("cheAuto_Increase");
  person.type("comDalay_ReDownLoad", "2");
  person.insertChip(sim::configFor(row, 11059200, random()));
  int chips = 1;
  person.every(Millis(50), [&] {
    if (person.goodChips() < chips) return true;
    if (chips++ == 2) return person.stop(), false;
    person.keepMemory();
    person.insertChip(sim::configFor(row, 11059200, random()), Millis(2500));
    return true;
  });
  person.press("comDownload", 1, Millis(120000));
  return person.takeRecord();
}

Record boardRun(const McuRecord& row, const std::string& name, int version, bool secondBank) {
  Random random(hashOf(name));
  Operator person;
  person.select(row.name);
  loadImages(person, row, random, 61440);
  person.chooseOptions(random);
  person.type("txt_download_max", std::to_string(1 + random() % 5000));
  sim::BoardConfig config;
  config.version = version;
  config.secondBank = secondBank;
  person.connectBoard(config, Millis(random() % 2 ? 0 : 3000));
  person.press("comTJXZ");
  return person.takeRecord();
}

Record demoRun(const McuRecord& row, const std::string& name) {
  Random random(hashOf(name));
  Operator person;
  person.select(row.name);
  loadImages(person, row, random, 6000);
  sim::DemoConfig config;
  config.row = &row;
  config.seed = random();
  config.downloadLine = {38400, 'e'};
  if (random() % 2) {
    config.command = {0x12, 0x05, 0x1F};
    config.commandLine = {38400, 'e'};
    person.tick("che_Demo_DownLoad");
    person.type("txt_DEMO_UserCode", "12 05 1f");
  }
  person.connectDemo(config);
  person.press("com_Demo_DownLoad");
  return person.takeRecord();
}

Record trimRun(const McuRecord& row, const std::string& name, const std::string& megahertz, const std::string& rate) {
  Random random(hashOf(name));
  Operator person;
  person.select(row.name);
  person.rates(rate, "115200");
  person.type("com_RC_frequency", megahertz, 5);
  loadImages(person, row, random, 600);
  sim::ChipConfig chip = sim::configFor(row, 11059200, random());
  chip.rc.gap = random() % 2 ? 0.1 : 0.0;
  person.insertChip(chip);
  person.press("comDownload", 0, Millis(120000));
  return person.takeRecord();
}

// A chip of another firmware, or with something to say of itself that the usual one does not say.
Record variantRun(const McuRecord& row, const std::string& name, int firmware) {
  Random random(hashOf(name));
  Operator person;
  person.select(row.name);
  person.rates("9600", "115200");
  loadImages(person, row, random, random() % 2 ? codeSize(row) : 1500);
  sim::ChipConfig chip = sim::configFor(row, pick(kClocks, random), random());
  chip.firmware = firmware;
  if (random() % 4 == 0) chip.startPair = random() % 2 == 0;
  chip.clockDoubled = random() % 4 == 0;
  chip.reservedCode = static_cast<int>(random() % 4);
  chip.reportsAltCode = random() % 4 == 0;
  chip.extendedCode = random() % 4 ? 0 : static_cast<int>(random() % 65536);
  chip.shortStatus = random() % 8 == 0;
  chip.directStatus = random() % 4 == 0;
  chip.shortDataReplies = random() % 4 == 0;
  if (random() % 2) person.chooseOptions(random);
  person.insertChip(chip);
  person.press("comDownload", 0, Millis(150000));
  return person.takeRecord();
}

// The chip at the far end is of another model than the one that was chosen.
Record wrongModelRun(const McuRecord& row, const std::string& name, const McuRecord& other) {
  Random random(hashOf(name));
  Operator person;
  person.select(row.name);
  person.rates("9600", "115200");
  loadImages(person, row, random, 1500);
  person.insertChip(sim::configFor(other, pick(kClocks, random), random()));
  person.press("comDownload", 0, Millis(60000));
  return person.takeRecord();
}

// The names stay in this order: a new fault of the simulated chip must not change what an old seed chooses.
void addChipFault(sim::ChipConfig& chip, Random& random) {
  constexpr const char* kFlags[] = {"dropsFinishReply",  "wrongFinishReply", "silentErase",         "wrongEraseReply",
                                    "wrongStageReply",   "silentStage",      "passesTestNotChange", "silentOptions",
                                    "optionsDoNotStick", "silentStatusRead", "wrongModelCode",      "oldFirmware",
                                    "idReadFails",       "silentMeasure",    "wrongMeasureReply",   "emptyMeasureReply",
                                    "cutMeasureReply",   "silentRcBaud",     "shortStatus",         "directStatus",
                                    "shortDataReplies"};
  constexpr const char* kCounts[] = {"refusesBaudTests", "diesAfterBlocks", "answersOptionsWith81"};
  const auto kind = random() % 4;
  if (kind < 2) {
    (void)sim::setChipFault(chip, pick(kFlags, random), "");
  } else if (kind == 2) {
    (void)sim::setChipFault(chip, pick(kCounts, random), std::to_string(random() % 12));
  } else {
    const std::string block = std::to_string(random() % 4) + ":" + std::to_string(random() % 5);
    (void)sim::setChipFault(chip, "failsBlock", block + (random() % 2 ? ":silent" : ""));
  }
}

sim::WireConfig faultyWire(Random& random) {
  constexpr sim::Micros kLatencies[] = {0, 0, 1000, 4000, 16000};
  constexpr double kChances[] = {0, 0.01, 0.03, 0.1};
  sim::WireConfig config{.seed = random(), .adapterLatency = pick(kLatencies, random)};
  config.random = sim::RandomFaults{.chance = pick(kChances, random)};
  return config;
}

Record faultyRun(const std::vector<const McuRecord*>& models, const std::string& name) {
  Random random(hashOf(name));
  Operator person(faultyWire(random));
  const McuRecord& row = *models[random() % models.size()];
  person.select(row.name);
  person.rates(pick(kFirstRates, random), pick(kTopRates, random));
  loadImages(person, row, random, 1 + random() % 6000);
  if (random() % 2) person.chooseOptions(random);
  sim::ChipConfig chip = sim::configFor(row, pick(kClocks, random), random());
  while (random() % 2 == 0) addChipFault(chip, random);
  chip.clockDoubled = random() % 4 == 0;
  if (random() % 4 == 0) chip.startPair = random() % 2 == 0;
  chip.rc.gap = random() % 4 ? 0.0 : 0.1;
  person.insertChip(chip, Millis(random() % 3000));
  person.press("comDownload", 0, Millis(150000));
  return person.takeRecord();
}

// Each model once: of rows that bear one name the first is meant.
std::vector<const McuRecord*> allModels() {
  std::vector<const McuRecord*> models;
  std::set<std::string_view> seen;
  for (const McuRecord& row : catalogue::allRows())
    if (seen.insert(row.name).second) models.push_back(&row);
  return models;
}

// Of each family the listed models with the least and with the most code.
std::vector<const McuRecord*> modelsOfEachFamily(const std::vector<const McuRecord*>& models) {
  std::map<int, std::pair<const McuRecord*, const McuRecord*>> ends;
  for (const McuRecord* row : models) {
    if (!row->listed) continue;
    auto& [least, most] = ends.try_emplace(static_cast<int>(row->family), row, row).first->second;
    if (row->apEnd < least->apEnd) least = row;
    if (row->apEnd > most->apEnd) most = row;
  }
  std::vector<const McuRecord*> chosen;
  for (const auto& [family, pair] : ends) {
    chosen.push_back(pair.first);
    if (pair.second != pair.first) chosen.push_back(pair.second);
  }
  return chosen;
}

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
  const auto models = allModels();
  const auto some = modelsOfEachFamily(models);
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
