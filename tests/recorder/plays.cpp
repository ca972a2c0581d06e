#include "tests/recorder/plays.h"

#include <algorithm>
#include <random>
#include <stdexcept>

#include "tests/recorder/operator.h"

namespace kvr::recorder {

namespace {

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

// In this order, whatever the compiler makes of arguments.
void setRates(Operator& person, Random& random) {
  const std::string first = pick(kFirstRates, random);
  person.rates(first, pick(kTopRates, random));
}

sim::ChipConfig anyChip(const McuRecord& row, Random& random) {
  const double clock = pick(kClocks, random);
  return sim::configFor(row, clock, random());
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

}  // namespace

Record wholeRun(const McuRecord& row, const std::string& name) {
  Random random(hashOf(name));
  Operator person;
  person.select(row.name);
  setRates(person, random);
  loadImages(person, row, random, random() % 2 == 0 ? codeSize(row) : 1 + random() % 5000);
  person.chooseOptions(random);
  const sim::ChipConfig chip = anyChip(row, random);
  person.insertChip(chip, Millis(random() % 1000));
  person.press("comDownload", 0);
  return person.takeRecord();
}

Record checkRun(const McuRecord& row, const std::string& name) {
  Random random(hashOf(name));
  Operator person;
  person.select(row.name);
  person.rates("9600", "115200");
  person.insertChip(anyChip(row, random));
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

// Serial values of four bytes, 5 from chip to chip.
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

Record variantRun(const McuRecord& row, const std::string& name, int firmware) {
  Random random(hashOf(name));
  Operator person;
  person.select(row.name);
  person.rates("9600", "115200");
  loadImages(person, row, random, random() % 2 ? codeSize(row) : 1500);
  sim::ChipConfig chip = anyChip(row, random);
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

Record wrongModelRun(const McuRecord& row, const std::string& name, const McuRecord& other) {
  Random random(hashOf(name));
  Operator person;
  person.select(row.name);
  person.rates("9600", "115200");
  loadImages(person, row, random, 1500);
  person.insertChip(anyChip(other, random));
  person.press("comDownload", 0, Millis(60000));
  return person.takeRecord();
}

namespace {

// The names stay in this order: a new fault of the simulated chip must not change what an old seed chooses.
void addChipFault(sim::ChipConfig& chip, Random& random) {
  constexpr const char* kFlags[] = {"dropsFinishReply",  "wrongFinishReply", "silentErase",         "wrongEraseReply",
                                    "wrongStageReply",   "silentStage",      "passesTestNotChange", "silentOptions",
                                    "optionsDoNotStick", "silentStatusRead", "wrongModelCode",      "oldFirmware",
                                    "idReadFails",       "silentMeasure",    "wrongMeasureReply",   "emptyMeasureReply",
                                    "cutMeasureReply",   "silentRcBaud",     "shortStatus",         "directStatus",
                                    "shortDataReplies"};
  constexpr const char* kCounts[] = {"refusesBaudTests", "diesAfterBlocks", "answersOptionsWith81"};
  const auto set = [&](const char* name, const std::string& value) {
    if (!sim::setChipFault(chip, name, value)) throw std::runtime_error("no fault " + std::string(name) + "=" + value);
  };
  const auto kind = random() % 4;
  if (kind < 2) {
    set(pick(kFlags, random), "");
  } else if (kind == 2) {
    const char* const count = pick(kCounts, random);
    set(count, std::to_string(random() % 12));
  } else {
    std::string block = std::to_string(random() % 4) + ":";
    block += std::to_string(random() % 5);
    set("failsBlock", random() % 2 ? block + ":silent" : block);
  }
}

sim::WireConfig faultyWire(Random& random) {
  constexpr sim::Micros kLatencies[] = {0, 0, 1000, 4000, 16000};
  constexpr double kChances[] = {0, 0.01, 0.03, 0.1};
  sim::WireConfig config{.seed = random(), .adapterLatency = pick(kLatencies, random)};
  config.random = sim::RandomFaults{.chance = pick(kChances, random)};
  return config;
}

}  // namespace

Record faultyRun(const std::vector<const McuRecord*>& models, const std::string& name) {
  Random random(hashOf(name));
  Operator person(faultyWire(random));
  const McuRecord& row = *models[random() % models.size()];
  person.select(row.name);
  setRates(person, random);
  loadImages(person, row, random, 1 + random() % 6000);
  if (random() % 2) person.chooseOptions(random);
  sim::ChipConfig chip = anyChip(row, random);
  while (random() % 2 == 0) addChipFault(chip, random);
  chip.clockDoubled = random() % 4 == 0;
  if (random() % 4 == 0) chip.startPair = random() % 2 == 0;
  chip.rc.gap = random() % 4 ? 0.0 : 0.1;
  person.insertChip(chip, Millis(random() % 3000));
  person.press("comDownload", 0, Millis(150000));
  return person.takeRecord();
}

}  // namespace kvr::recorder
