// Windows that serve one device after another, of all kinds, with files that come, go and cannot be read, over faulty
// lines. Whatever happens: never a PASS for a device that holds something else than the files that the user loaded
// said, never a hang, never a chip that is treated against its rules.
//
// A seed is one window. KVR_SOAK_SEED=<seed> runs it alone, KVR_SOAK_COUNT=<n> runs so many windows.
#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>
#include <map>

#include "tests/soak/user.h"
#include "tests/support/models.h"

namespace kvr::soak {
namespace {

using platform::Millis;

enum class Kind { Chip, FixedLink, Trigger, Check, Board, Demo };
constexpr const char* kKindNames[] = {"chip", "fixed link", "trigger", "check", "board", "demo"};

// What may befall the files between two runs.
enum class Twist {
  None,
  Missing,         // a file is chosen that cannot be read
  HexFolder,       // a binary in a folder whose name ends like a HEX file's
  NoRecord,        // a HEX file without a record
  ProjectRefused,  // a project that is none, with "reload before each programming" on
  Rebuilt,         // reload is on and the file is another one now
  Gone,            // reload is on and the file is away
  TooLong,         // more code than the chip takes
  DataNotSent,     // a data image for a model that is sent none
  PortRefused,     // the port cannot be opened
  Count
};
constexpr const char* kTwistNames[] = {"none",    "missing", "hex folder", "no record",     "project refused",
                                       "rebuilt", "gone",    "too long",   "data not sent", "port refused"};

template <class T, std::size_t N>
T pick(const T (&from)[N], Random& random) {
  return from[random() % N];
}

const std::vector<const McuRecord*>& listedModels() {
  static const std::vector<const McuRecord*> models = [] {
    std::vector<const McuRecord*> all = support::everyModel();
    std::erase_if(all, [](const McuRecord* row) { return !row->listed; });
    return all;
  }();
  return models;
}

sim::WireConfig randomWire(Random& random) {
  constexpr sim::Micros kLatencies[] = {0, 0, 1000, 4000, 16000};
  constexpr double kChances[] = {0, 0, 0.01, 0.03, 0.1};
  sim::WireConfig config{.seed = random(), .adapterLatency = pick(kLatencies, random), .keepLog = false};
  config.random = sim::RandomFaults{.chance = pick(kChances, random)};
  return config;
}

void addChipFault(sim::ChipConfig& chip, Random& random) {
  static const std::vector<sim::FaultName> kNames = sim::chipFaultNames();
  const sim::FaultName& fault = kNames[random() % kNames.size()];
  // Firmwares from letter D on always say who they are.
  if (fault.name == "shortStatus" && sim::usualLetter(*chip.row) > 'C') return;
  std::string value;
  if (fault.value == sim::FaultValue::count) value = std::to_string(random() % 12);
  if (fault.value == sim::FaultValue::block)
    value = std::to_string(random() % 4) + ":" + std::to_string(random() % 5) + (random() % 2 ? ":silent" : "");
  EXPECT_TRUE(sim::setChipFault(chip, fault.name, value)) << fault.name << "=" << value;
}

sim::ChipConfig randomChip(const McuRecord& row, Random& random) {
  constexpr double kClocks[] = {11059200, 22118400, 18432000, 6000000, 12000000, 24000000, 33177600, 4000000};
  const double clock = pick(kClocks, random);
  sim::ChipConfig chip = sim::configFor(row, clock, random());
  while (random() % 4 == 0) addChipFault(chip, random);
  chip.clockDoubled = random() % 4 == 0;
  if (random() % 4 == 0) chip.startPair = random() % 2 == 0;
  chip.bareReplies = random() % 8 == 0;
  if (sim::usualLetter(row) <= 'C') chip.shortStatus = chip.shortStatus || random() % 4 == 0;
  return chip;
}

// Empty: the flash holds what the file says. `from`: where the file's first byte belongs.
std::string difference(const Meant& meant, const sim::FlashMemory& flash, std::int64_t from, bool leftOutIsTold) {
  const auto held = flash.bytes();
  for (std::size_t i = 0; i < meant.size(); ++i) {
    const auto at = static_cast<std::size_t>(from) + i;
    if (!meant[i] || (at < held.size() && held[at] == *meant[i])) continue;
    if (leftOutIsTold && (at >= held.size() || !flash.isWritten(at))) continue;
    return "at " + std::to_string(at) + " of " + std::to_string(meant.size()) + " holds " +
           std::to_string(at < held.size() ? held[at] : -1) + ", meant " + std::to_string(*meant[i]) +
           (at < held.size() && flash.isWritten(at) ? "" : ", never written") + "; ";
  }
  return {};
}

class Window {
 public:
  explicit Window(std::uint64_t seed) : random_(seed), user_(randomWire(random_)) {}
  // What was wrong with one run more; empty: nothing.
  std::string run();
  bool lastPassed() const { return passed_; }

 private:
  bool chance(unsigned one) { return random_() % one == 0; }
  std::size_t codeSize() {
    const auto whole = static_cast<std::size_t>(user_.model().apEnd) + 1;
    return chance(16) ? whole : std::min<std::size_t>(whole, 1 + random_() % 6000);
  }
  UserFile codeFile(std::size_t size) {
    const bool hex = size <= 0x10000 && chance(2);  // a HEX file holds 64 KB: extended addresses mean nothing here
    return hex ? hexFile(random_, "/fw.hex", size) : binaryFile(random_, "/fw.bin", size);
  }
  Twist chooseTwist();
  void prepare();
  void twist();
  void rebuild();
  Kind chooseKind();
  std::string play();
  std::string playOnChip(platform::Button& button);
  std::string judge();
  std::string judgeChip(bool claimed);
  std::string judgeBoard(bool claimed);

  Random random_;
  User user_;
  Twist twist_ = Twist::None;
  Kind kind_ = Kind::Chip;
  bool passed_ = false;
  std::string story_;
};

Twist Window::chooseTwist() {
  if (chance(2)) return Twist::None;
  const auto twist = static_cast<Twist>(random_() % static_cast<std::size_t>(Twist::Count));
  const bool reloads = kind_ == Kind::Chip || kind_ == Kind::FixedLink || kind_ == Kind::Trigger;
  const bool isReload = twist == Twist::Rebuilt || twist == Twist::Gone || twist == Twist::ProjectRefused;
  if (isReload && !reloads) return Twist::None;
  return twist;
}

void Window::prepare() {
  user_.form.images.panel.cekReloadFile.userSet(false);
  user_.link.refusesToOpen = {};
  if (story_.empty() || chance(2)) user_.pick(*listedModels()[random_() % listedModels().size()]);
  constexpr const char* kFirstRates[] = {"1200", "2400", "4800", "9600"};
  constexpr const char* kTopRates[] = {"115200", "57600", "38400", "19200"};
  user_.form.download.cobBaudMin.setText(pick(kFirstRates, random_));
  user_.form.download.cobBaudMax.setText(pick(kTopRates, random_));
  // A run that met a wrong model has thrown the image away.
  const bool unsure = twist_ == Twist::Rebuilt || twist_ == Twist::Gone ||
                      twist_ == Twist::ProjectRefused;  // whether the run came to its reload
  if (unsure || user_.code().empty() || chance(2) || !user_.form.images.state.imageValid)
    user_.openCode(codeFile(codeSize()));
  const McuRecord& row = user_.model();
  const bool sendsData = catalogue::hasDataFile(row) && static_cast<int>(row.family) != 18;
  if (sendsData && user_.dataButtonIsOn() && chance(3)) {
    const auto room = static_cast<std::size_t>(row.dataEnd - row.dataStart) + 1;
    user_.openData(binaryFile(random_, "/ee.bin", chance(2) ? 1 + random_() % 8 : std::min<std::size_t>(room, 700)));
  }
}

// Another build of the program lies under the name that is open.
void Window::rebuild() {
  user_.rewriteCode(user_.codeIsHex() ? hexFile(random_, "", codeSize()) : binaryFile(random_, "", codeSize()));
}

void Window::twist() {
  auto& reload = user_.form.images.panel.cekReloadFile;
  const std::string text = "what somebody wrote down\n";
  switch (twist_) {
    case Twist::Missing:
      return user_.openBad("/away/fw.bin", std::nullopt);
    case Twist::HexFolder:
      return user_.openCode(binaryFile(random_, "/x/proj.hex.d/fw.bin", codeSize()));
    case Twist::NoRecord:
      return user_.openBad("/notes.hex", text);
    case Twist::ProjectRefused:
      reload.userSet(true);
      user_.files.put("/job.KVR", text);
      user_.openProject("/job.KVR");
      return rebuild();
    case Twist::Rebuilt:
      reload.userSet(true);
      return rebuild();
    case Twist::Gone:
      reload.userSet(true);
      return user_.removeCode();
    case Twist::TooLong:
      // The simulated chips of these keep more for their boot block than any host knows of.
      if (user_.model().family >= catalogue::Family::Maple && user_.model().family <= catalogue::Family::Oak) return;
      return user_.openCode(codeFile(static_cast<std::size_t>(user_.model().bootEnd) + 1 - random_() % 3000));
    case Twist::DataNotSent:
      user_.pick(*catalogue::findByName("Rowan-H20"));
      user_.openCode(codeFile(codeSize()));
      return user_.openData(binaryFile(random_, "/ee.bin", 200));
    case Twist::PortRefused:
      user_.link.refusesToOpen = {platform::PortError::Kind::Denied, "denied"};
      return;
    default:
      return;
  }
}

Kind Window::chooseKind() {
  const int family = static_cast<int>(user_.model().family);
  const auto dice = random_() % 10;
  if (dice == 0) return Kind::Check;
  if (dice == 1) return Kind::Trigger;
  if (dice == 2 && (family < 15 || family > 17)) return Kind::FixedLink;
  if (dice == 3 && family != 0 && family != 18) return Kind::Board;
  if (dice <= 6 && sim::demoModelNumber(user_.model().name) != 0) return Kind::Demo;
  return Kind::Chip;
}

std::string Window::playOnChip(platform::Button& button) {
  // Now and then the chip is of another model.
  const McuRecord& row = chance(30) ? *listedModels()[random_() % listedModels().size()] : user_.model();
  user_.insertChip(randomChip(row, random_), Millis(random_() % 3000));
  if (kind_ == Kind::Trigger) {
    user_.loop.runFor(Millis(3100));
    user_.chip->setApplication(
        std::make_unique<sim::TriggerApplication>(sim::Line{19200, 'n'}, sim::Bytes{0x12, 0x34, 0x56}));
    user_.chip->runApplication(user_.loop.now().count());
    user_.form.userpath.txtUserCode.userType("12 34 56");
    user_.form.userpath.cobUserCodeBaud.setText("19200");
  }
  return user_.start(button, user_.form.download.comStop_Download);
}

std::string Window::play() {
  auto& form = user_.form;
  switch (kind_) {
    case Kind::Chip:
      return playOnChip(form.download.comDownload[0]);
    case Kind::FixedLink:
      return playOnChip(form.download.Command2);
    case Kind::Trigger:
      return playOnChip(form.userpath.comSendUserCode);
    case Kind::Check:
      return playOnChip(form.download.comReadChipLock);
    case Kind::Board: {
      sim::BoardConfig config;
      config.version = 0x15 + static_cast<int>(random_() % 3);
      config.secondBank = chance(2);
      config.seed = static_cast<std::uint32_t>(random_());
      user_.connectBoard(config, Millis(random_() % 3000));
      form.offline.txt_download_max.setText("3");
      return user_.start(form.offline.comTJXZ, form.download.comStop_Download);
    }
    case Kind::Demo: {
      sim::DemoConfig config;
      config.row = &user_.model();
      config.seed = random_();
      config.downloadLine = {38400, 'e'};
      if (chance(4)) config.diesAfterBlocks = static_cast<int>(random_() % 4);
      user_.connectDemo(config);
      return user_.start(form.userpath.com_Demo_DownLoad, form.userpath.com_Demo_Stop);
    }
  }
  return {};
}

std::string Window::judgeChip(bool claimed) {
  std::string wrong;
  const bool sameModel = user_.chip->row().name == user_.model().name;
  if (claimed) {
    const auto& memory = user_.chip->memory();
    wrong += difference(user_.code(), memory, 0, user_.codeIsCut());
    const bool dataIsTold = user_.says("is not programmed in this series");
    if (!dataIsTold) wrong += difference(user_.data(), memory, user_.model().dataStart, false);
    if (user_.chip->erases() == 0) wrong += "PASS without an erase; ";
  }
  // A chip that tells nothing of itself may be of a firmware that wants other frames.
  if (sameModel && !user_.chip->config().shortStatus) wrong += user_.chip->violationText();
  return wrong;
}

std::string Window::judgeBoard(bool claimed) {
  if (!claimed) return {};
  std::string wrong;
  sim::BoardJob job = user_.board->job();
  sim::FlashMemory chip(65536, 65536, 17);
  const sim::BoardRun made = job.programNext(chip);
  if (!made.done) return "the board cannot program: " + made.why;
  bool told = user_.says("will not be programmed") || user_.codeIsCut();
  for (const auto& box : user_.dialogs.shown) told = told || box.text.find("won't be downloaded") != std::string::npos;
  wrong += difference(user_.code(), chip, 0, told);
  const int family = static_cast<int>(user_.model().family);
  if (family >= 3 && family <= 10) wrong += difference(user_.data(), chip, user_.model().dataStart, told);
  return wrong;
}

std::string Window::judge() {
  const bool claimed = user_.passed();
  passed_ = claimed;
  std::string wrong = user_.notAtRest();
  if (kind_ == Kind::Check && claimed) wrong += "PASS for a look at a chip; ";
  if (kind_ == Kind::Board) return wrong + judgeBoard(claimed);
  if (kind_ == Kind::Demo)
    return wrong + (claimed ? difference(user_.code(), user_.demo->memory(), 0, user_.codeIsCut()) : "");
  return wrong + judgeChip(claimed);
}

std::string Window::run() {
  user_.form.main.textMsg.clear();
  user_.dialogs.shown.clear();
  prepare();
  kind_ = chooseKind();
  twist_ = chooseTwist();
  twist();
  if (twist_ == Twist::DataNotSent) kind_ = Kind::Chip;
  story_ += std::string(user_.model().name) + ", " + kKindNames[static_cast<int>(kind_)] + ", " +
            kTwistNames[static_cast<int>(twist_)] + "; ";
  std::string wrong = play();
  wrong += judge();
  if (wrong.empty()) return {};
  std::string boxes;
  for (const auto& box : user_.dialogs.shown) boxes += "\n[" + box.text + "]";
  return std::string(kKindNames[static_cast<int>(kind_)]) + "/" + kTwistNames[static_cast<int>(twist_)] + ": " + wrong +
         "\n" + story_ + "\n" + user_.pane() + boxes;
}

TEST(Soak, NeverAPassForADeviceThatDiffersFromTheFiles) {
  const char* alone = std::getenv("KVR_SOAK_SEED");
  const char* count = std::getenv("KVR_SOAK_COUNT");
  const std::uint64_t first = alone ? std::strtoull(alone, nullptr, 10) : 1;
  const std::uint64_t last = alone ? first : count ? std::strtoull(count, nullptr, 10) : 200;
  int runs = 0, passed = 0;
  std::map<std::string, int> wrongs;
  for (std::uint64_t seed = first; seed <= last; ++seed) {
    Window window(seed);
    for (std::uint64_t left = 1 + seed % 7; left > 0; --left) {
      const std::string wrong = window.run();
      ++runs;
      passed += window.lastPassed();
      if (wrong.empty()) continue;
      if (++wrongs[wrong.substr(0, wrong.find(':'))] <= 2) ADD_FAILURE() << "seed " << seed << ": " << wrong;
      break;
    }
  }
  std::cout << runs << " runs in " << last - first + 1 << " windows, " << passed << " passed\n";
  for (const auto& [what, times] : wrongs) std::cout << what << ": " << times << " wrong\n";
  EXPECT_GT(passed, alone ? -1 : runs / 4);
}

}  // namespace
}  // namespace kvr::soak
