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

// A run before the button is pressed: the dice, the model, and the user at a window that nobody has used yet.
struct Play {
  Play(const McuRecord& model, const std::string& name) : Play(model, Random(hashOf(name)), {}) {}
  Play(const McuRecord& model, const Random& dice, sim::WireConfig wire)
      : random(dice), row(model), user(std::move(wire)) {
    user.select(std::string(row.name));
    user.rates("9600", "115200");
  }
  void setRates() {
    const std::string first = pick(kFirstRates, random);  // before the other, whatever the compiler makes of arguments
    user.rates(first, pick(kTopRates, random));
  }
  // Both images; `most` bytes of code at most.
  void loadImages(std::size_t most) {
    user.loadCode(randomBytes(random, std::min(codeSize(), most)));
    if (!catalogue::hasDataFile(row)) return;
    const auto room = static_cast<std::size_t>(row.dataEnd - row.dataStart) + 1;
    user.loadData(randomBytes(random, std::min(room, most)));
  }
  std::size_t codeSize() const { return static_cast<std::size_t>(row.apEnd) + 1; }
  sim::ChipConfig usualChip() { return sim::configFor(row, 11059200, random()); }
  sim::ChipConfig anyChip() { return anyChip(row); }
  sim::ChipConfig anyChip(const McuRecord& model) {
    const double clock = pick(kClocks, random);
    return sim::configFor(model, clock, random());
  }
  Record press(const std::string& button, Millis limit, int index = platform::Control::kSingle) {
    user.pressAndWait(button, index, limit);
    return user.takeRecord();
  }
  Record download(Millis limit) { return press("comDownload", limit, 0); }

  Random random;
  const McuRecord& row;
  Operator user;
};

constexpr Millis kPatience = std::chrono::minutes(30);

}  // namespace

Record wholeRun(const McuRecord& row, const std::string& name) {
  Play play(row, name);
  play.setRates();
  play.loadImages(play.random() % 2 == 0 ? play.codeSize() : 1 + play.random() % 5000);
  play.user.chooseOptions(play.random);
  const sim::ChipConfig chip = play.anyChip();
  play.user.insertChip(chip, Millis(play.random() % 1000));
  return play.download(kPatience);
}

Record checkRun(const McuRecord& row, const std::string& name) {
  Play play(row, name);
  play.user.insertChip(play.anyChip());
  return play.press("comReadChipLock", Millis(20000));
}

Record fixedLinkRun(const McuRecord& row, const std::string& name) {
  Play play(row, name);
  play.loadImages(1500);
  play.user.insertChip(play.usualChip());
  return play.press("Command2", Millis(60000));
}

Record triggerRun(const McuRecord& row, const std::string& name) {
  Play play(row, name);
  play.loadImages(1500);
  play.user.insertChip(play.usualChip());
  play.user.runProgramOfChip(kUserLine, {0x12, 0x34, 0x56});
  play.user.type("txtUserCode", "12 34 56");
  play.user.type("cobUserCodeBaud", "19200");
  play.user.type("cobUserCodeParity", "Odd");
  play.user.type("cobUserCodeDataBits", "7");
  play.user.type("cobUserCodeStopBits", "2");
  return play.press("comSendUserCode", Millis(120000));
}

// Serial values of four bytes, 5 from chip to chip.
Record repeatRun(const McuRecord& row, const std::string& name) {
  Play play(row, name);
  play.loadImages(1500);
  play.user.choose("optAuto_Increase", 0);
  int box = 0;
  for (const char* text : {"0103", "4", "100", "5"}) play.user.type("texAuto_Increase", text, box++);
  play.user.tick("cheAuto_Increase");
  play.user.type("comDalay_ReDownLoad", "2");
  play.user.insertChip(play.usualChip());
  int chips = 1;
  play.user.every(Millis(50), [&] {
    if (play.user.goodChips() < chips) return true;
    if (chips++ == 2) return play.user.stop(), false;
    play.user.keepMemory();
    play.user.insertChip(play.usualChip(), Millis(2500));
    return true;
  });
  return play.press("comDownload", Millis(120000), 1);
}

Record boardRun(const McuRecord& row, const std::string& name, int version, bool secondBank) {
  Play play(row, name);
  play.loadImages(61440);
  play.user.chooseOptions(play.random);
  play.user.type("txt_download_max", std::to_string(1 + play.random() % 5000));
  sim::BoardConfig config;
  config.version = version;
  config.secondBank = secondBank;
  play.user.connectBoard(config, Millis(play.random() % 2 ? 0 : 3000));
  return play.press("comTJXZ", kPatience);
}

Record demoRun(const McuRecord& row, const std::string& name) {
  Play play(row, name);
  play.loadImages(6000);
  sim::DemoConfig config;
  config.row = &row;
  config.seed = play.random();
  config.downloadLine = {38400, 'e'};
  if (play.random() % 2) {
    config.command = {0x12, 0x05, 0x1F};
    config.commandLine = {38400, 'e'};
    play.user.tick("che_Demo_DownLoad");
    play.user.type("txt_DEMO_UserCode", "12 05 1f");
  }
  play.user.connectDemo(config);
  return play.press("com_Demo_DownLoad", kPatience);
}

Record trimRun(const McuRecord& row, const std::string& name, const std::string& megahertz, const std::string& rate) {
  Play play(row, name);
  play.user.rates(rate, "115200");
  play.user.type("com_RC_frequency", megahertz, 5);
  play.loadImages(600);
  sim::ChipConfig chip = play.usualChip();
  chip.rc.gap = play.random() % 2 ? 0.1 : 0.0;
  play.user.insertChip(chip);
  return play.download(Millis(120000));
}

Record variantRun(const McuRecord& row, const std::string& name, int firmware) {
  Play play(row, name);
  play.loadImages(play.random() % 2 ? play.codeSize() : 1500);
  sim::ChipConfig chip = play.anyChip();
  chip.firmware = firmware;
  if (play.random() % 4 == 0) chip.startPair = play.random() % 2 == 0;
  chip.clockDoubled = play.random() % 4 == 0;
  chip.reservedCode = static_cast<int>(play.random() % 4);
  chip.reportsAltCode = play.random() % 4 == 0;
  chip.extendedCode = play.random() % 4 ? 0 : static_cast<int>(play.random() % 65536);
  chip.shortStatus = play.random() % 8 == 0;
  chip.directStatus = play.random() % 4 == 0;
  chip.shortDataReplies = play.random() % 4 == 0;
  if (play.random() % 2) play.user.chooseOptions(play.random);
  play.user.insertChip(chip);
  return play.download(Millis(150000));
}

Record wrongModelRun(const McuRecord& row, const std::string& name, const McuRecord& other) {
  Play play(row, name);
  play.loadImages(1500);
  play.user.insertChip(play.anyChip(other));
  return play.download(Millis(60000));
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
  const sim::WireConfig wire = faultyWire(random);
  const McuRecord& row = *models[random() % models.size()];
  Play play(row, random, wire);
  play.setRates();
  play.loadImages(1 + play.random() % 6000);
  if (play.random() % 2) play.user.chooseOptions(play.random);
  sim::ChipConfig chip = play.anyChip();
  while (play.random() % 2 == 0) addChipFault(chip, play.random);
  chip.clockDoubled = play.random() % 4 == 0;
  if (play.random() % 4 == 0) chip.startPair = play.random() % 2 == 0;
  chip.rc.gap = play.random() % 4 ? 0.0 : 0.1;
  play.user.insertChip(chip, Millis(play.random() % 3000));
  return play.download(Millis(150000));
}

}  // namespace kvr::recorder
