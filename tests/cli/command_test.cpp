// The command as a script meets it: what it ends with, what it leaves on the chip and in files, what it tells.
#include <gtest/gtest.h>

#include <fstream>

#include "tests/cli/cli_bench.h"
#include "tests/support/engine_bench.h"
#include "tests/support/models.h"

namespace kvr::cli {
namespace {

using platform::Millis;

constexpr const char* kModel = "Ivy-H20S";
constexpr const char* kProgram = "program --model Ivy-H20S /image.bin ";

struct CommandTest : testing::Test {
  CommandTest() { bench.files.put("/image.bin", image); }
  int run(const std::string& line) { return bench.run(wordsOf(line)); }
  int program(const std::string& more = {}) { return run(kProgram + more); }
  // The chip that comes to the bench goes wrong.
  void insertFaulty(const std::string& fault, const std::string& value = {}) {
    sim::ChipConfig config = sim::configFor(*catalogue::findByName(kModel), 11059200, 1);
    ASSERT_TRUE(sim::setChipFault(config, fault, value));
    bench.insertChip(config);
  }
  // The next chip takes the place of this one while the command pauses between two.
  void changeChips() {
    bench.out.onNote = [this](std::string_view) {
      bench.loop.after(Millis(1000), [this] {
        flashes.emplace_back(bench.chip->flash().begin(), bench.chip->flash().end());
        bench.insertModel(kModel, flashes.size() + 2);
      });
    };
  }
  CliBench bench;
  platform::Bytes image = support::randomBytes(7, 2000);
  std::vector<platform::Bytes> flashes;
};

// --- What it ends with. ---

TEST_F(CommandTest, AProgrammedChipEndsWith0) {
  bench.insertModel(kModel);
  EXPECT_EQ(program(), 0);
  EXPECT_TRUE(std::equal(image.begin(), image.end(), bench.chip->flash().begin()));
  EXPECT_TRUE(bench.writes("PASS  Ivy-H20S  firmware ")) << bench.streams.written;
  EXPECT_TRUE(bench.says("Encrypt OK."));
  EXPECT_FALSE(bench.link.isOpen());
}

TEST_F(CommandTest, AChipThatDiesWhileItIsProgrammedEndsWith1) {
  insertFaulty("diesAfterBlocks", "3");
  EXPECT_EQ(program(), 1);
  EXPECT_TRUE(bench.says("The chip may be empty now.")) << bench.streams.told;
  EXPECT_EQ(bench.streams.written, "");
}

TEST_F(CommandTest, TheEndOfItsInputEndsItAtOnceButForAChipInHand) {
  struct Case {
    int chipAfter, inputUntil, endsAt;  // ms
    bool passes;
  };
  // No chip yet; a chip in hand; between two chips.
  for (const Case& one : {Case{90000, 1000, 1000, false}, Case{100, 1500, 3500, true}, Case{100, 9000, 9000, true}}) {
    CliBench line;
    line.files.put("/image.bin", image);
    line.insertChip(sim::configFor(*catalogue::findByName(kModel), 11059200, 1), Millis(one.chipAfter));
    line.loop.after(Millis(one.inputUntil), [&] { line.input.ended(); });
    EXPECT_EQ(line.run(wordsOf(std::string(kProgram) + "--count 3 --delay 60 --end-with-input")), 129);
    EXPECT_EQ(line.writes("PASS  "), one.passes) << line.streams.told;
    EXPECT_NEAR(static_cast<double>(line.loop.now().count()) / 1000, one.endsAt, 1000) << one.inputUntil;
  }
}

TEST_F(CommandTest, WrongUseEndsWith2AndSaysWhatIsMeant) {
  const std::pair<const char*, const char*> cases[] = {
      {"", "subcommand is required"},
      {"program", "--model"},
      {"program --model Ivy-H20S", "Name the code file"},
      {"program --model Ivy-H20 /image.bin", "Did you mean Ivy-H20"},
      {"program --model Ivy-H20S /image.bin --min-baud 300", "--min-baud"},
      {"program --model Ivy-H20S /image.bin --code-at FFFFFF", "kvr: "},
      {"program --model Ivy-H20S /image.bin --trigger 11 --trigger-line 9600", "BAUD,"},
      {"program --model Ivy-H20S /image.bin --serial-step 2", "--serial-at"},
      {"program --model Ivy-H20S /image.bin --serial-at 10", "--serial-next"},
      {"program --model Ivy-H20S --project /p.KVR", "excludes"},
      {"models Nothing", "No model matches"},
  };
  for (const auto& [line, told] : cases) {
    bench.streams.told.clear();
    EXPECT_EQ(run(line), 2) << line;
    EXPECT_TRUE(bench.says(told)) << line << ": " << bench.streams.told;
  }
  EXPECT_TRUE(bench.wire.log().empty());
}

TEST_F(CommandTest, APortThatIsNotThereOrGoesAwayEndsWith3) {
  bench.insertModel(kModel);
  EXPECT_EQ(program("--port /dev/ttyUSB7"), 3);
  EXPECT_TRUE(bench.says("usb:1A86:7523")) << bench.streams.told;
  bench.link.refusesToOpen = {platform::PortError::Kind::Denied, "/dev/ttyV0: permission denied"};
  EXPECT_EQ(program(), 3);
  EXPECT_TRUE(bench.says("permission denied"));
  bench.link.refusesToOpen = {};
  bench.loop.after(Millis(1500), [this] { bench.link.unplug(); });
  EXPECT_EQ(program(), 3);
  EXPECT_TRUE(bench.says("unplugged"));
}

TEST_F(CommandTest, NoChipWithinTheTimeoutEndsWith4AfterThatTime) {
  EXPECT_EQ(program("--timeout 2.5"), 4);
  EXPECT_EQ(std::chrono::duration_cast<std::chrono::seconds>(bench.loop.now()).count(), 2);
  EXPECT_TRUE(bench.says("No chip has answered.\nTurn the chip's power off and on"));
  EXPECT_FALSE(bench.link.isOpen());
}

TEST_F(CommandTest, AnotherModelEndsWith5AndIsLeftAsItWas) {
  bench.insertModel("Ivy-H40S");
  const platform::Bytes before(bench.chip->flash().begin(), bench.chip->flash().end());
  EXPECT_EQ(program(), 5);
  EXPECT_TRUE(std::equal(before.begin(), before.end(), bench.chip->flash().begin()));
}

TEST_F(CommandTest, FilesAndProjectsThatAreNoGoodEndWith6) {
  bench.files.put("/empty.hex", "");
  bench.files.put("/bad.hex", ":020000000102FF\n:00000001FF\n");
  bench.files.put("/long.bin", support::randomBytes(1, 60000));
  bench.files.put("/broken.KVR", "VER: 1.2\r\nMCU_Type: Ivy-H20S\r\nEND\r\n0102");
  for (const char* what : {"--model Ivy-H20S /absent.hex", "--model Ivy-H20S /empty.hex", "--model Ivy-H20S /bad.hex",
                           "--model Ivy-H20S /long.bin", "--project /broken.KVR", "--project /absent.KVR",
                           "--model Ivy-H20S /image.bin --log /nowhere/log.csv"})
    EXPECT_EQ(run(std::string("program ") + what), 6) << what;
  EXPECT_TRUE(bench.says("Say --yes"));
  EXPECT_TRUE(bench.wire.log().empty());
}

TEST_F(CommandTest, AJobThatCannotStartEndsWith7) {
  EXPECT_EQ(run("program --model Pine-H03E /image.bin --yes"), 7);
  EXPECT_TRUE(bench.says("--frequency")) << bench.streams.told;
  EXPECT_EQ(program("--serial-at 1 --serial-next 5 --serial-width 4"), 7);
  EXPECT_TRUE(bench.wire.log().empty());
}

TEST_F(CommandTest, BytesLeftOutWithYesEndWith8) {
  bench.files.put("/long.bin", support::randomBytes(1, 60000));
  bench.insertModel(kModel);
  EXPECT_EQ(run("program --model Ivy-H20S /long.bin --yes"), 8);
  EXPECT_TRUE(bench.writes("PASS, PART LEFT OUT")) << bench.streams.written << bench.streams.told;
}

TEST_F(CommandTest, EveryEndHasItsNumber) {
  using engine::Ending;
  const auto code = [](engine::Outcome outcome, Cut cut) { return static_cast<int>(exitCodeOf(outcome, cut)); };
  EXPECT_EQ(code({.ending = Ending::Passed}, Cut::Interrupt), 0);  // it came after the last frame
  EXPECT_EQ(code({.ending = Ending::Failed}, Cut::None), 1);
  EXPECT_EQ(code({.ending = Ending::Failed, .portLost = true}, Cut::Timeout), 3);
  EXPECT_EQ(code({.ending = Ending::Stopped}, Cut::Timeout), 4);
  EXPECT_EQ(code({.ending = Ending::Failed, .wrongModel = true}, Cut::None), 5);
  EXPECT_EQ(code({.ending = Ending::Refused}, Cut::None), 7);
  EXPECT_EQ(code({.ending = Ending::PassedInPart}, Cut::HangUp), 8);
  EXPECT_EQ(code({.ending = Ending::Stopped}, Cut::HangUp), 129);
  EXPECT_EQ(code({.ending = Ending::Stopped}, Cut::Interrupt), 130);
  EXPECT_EQ(code({.ending = Ending::Stopped}, Cut::Terminate), 143);
}

// --- Ctrl-C. ---

TEST_F(CommandTest, CtrlCAtAnyMomentClosesThePortAfterAWholeFrame) {
  bench.insertModel(kModel);
  ASSERT_EQ(program(), 0);
  const std::set<int> moments = bench.moments();
  ASSERT_GT(moments.size(), 50u);
  for (const int moment : moments) {
    CliBench stopped;
    stopped.files.put("/image.bin", image);
    stopped.insertModel(kModel);
    stopped.loop.after(Millis(moment), [&] { stopped.stopper.end(Cut::Interrupt); });
    const int code = stopped.run(wordsOf(kProgram));
    const bool done = code == 0 && std::equal(image.begin(), image.end(), stopped.chip->flash().begin());
    EXPECT_TRUE(code == 130 || done) << moment << " ms: " << code << stopped.streams.told;
    EXPECT_FALSE(stopped.link.isOpen());
    EXPECT_EQ(stopped.chip->violationText(), "") << moment << " ms";
  }
}

// --- Several chips. ---

TEST_F(CommandTest, ChipsGetTheirNumbersAndTheLogALineEach) {
  bench.insertModel(kModel);
  changeChips();
  EXPECT_EQ(
      program("--count 3 --serial-at 7CF --serial-next 98 --serial-width 2 --serial-radix bcd --log /program/l.csv"), 0)
      << bench.streams.told;
  ASSERT_EQ(flashes.size(), 2u);
  const auto number = [](const auto& flash) { return platform::Bytes{flash[0x7CE], flash[0x7CF]}; };
  EXPECT_EQ(number(flashes[0]), (platform::Bytes{0x00, 0x98}));
  EXPECT_EQ(number(flashes[1]), (platform::Bytes{0x00, 0x99}));
  EXPECT_EQ(number(bench.chip->flash()), (platform::Bytes{0x01, 0x00}));
  EXPECT_TRUE(bench.writes("Next serial number: 0101")) << bench.streams.written;
  const platform::Bytes log = bench.files.files["/program/l.csv"].bytes;
  EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), 4);  // with the header
}

TEST_F(CommandTest, ALogThatCannotBeWrittenEndsTheSeriesAfterTheChip) {
  bench.insertModel(kModel);
  bench.files.diskFull = true;
  EXPECT_EQ(program("--count 3 --log /program/l.csv"), 6);
  EXPECT_TRUE(bench.writes("PASS")) << bench.streams.told;
  EXPECT_TRUE(bench.says("disk full"));
}

TEST_F(CommandTest, AReaderThatGoesAwayLetsTheChipBeFinishedAndNoOtherBegin) {
  bench.insertModel(kModel);
  bench.loop.after(Millis(1000), [this] { bench.stopper.endAfterThis(Cut::OutputClosed); });
  EXPECT_EQ(program("--forever"), 141);
  EXPECT_TRUE(std::equal(image.begin(), image.end(), bench.chip->flash().begin()));
}

// --- The rest of the commands. ---

TEST_F(CommandTest, InfoTellsWhatAChipHoldsAndChangesNothing) {
  bench.insertModel(kModel);
  const platform::Bytes before(bench.chip->flash().begin(), bench.chip->flash().end());
  EXPECT_EQ(run("info --model Ivy-H40S"), 0) << bench.streams.told;
  EXPECT_TRUE(bench.writes("Ivy-H20S  code ")) << bench.streams.written;
  EXPECT_TRUE(bench.writes("Pre-scale time of WDT"));
  EXPECT_TRUE(std::equal(before.begin(), before.end(), bench.chip->flash().begin()));
}

TEST_F(CommandTest, InfoFindsAChipOfAnyFamilyInWhicheverTurnItComes) {
  std::set<catalogue::Family> seen;
  for (const auto* row : support::everyModel()) {
    if (!seen.insert(row->family).second) continue;
    const std::string name(row->name);
    std::string asItself;
    for (const auto& [wait, more] : {std::pair{100, " --model " + name}, {100, ""}, {1600, ""}, {3100, ""}}) {
      CliBench one;
      one.insertChip(sim::configFor(*row, 11059200, 1), Millis(wait));
      EXPECT_EQ(one.run(wordsOf("info --timeout 60" + more)), 0) << name << one.streams.told;
      if (!more.empty()) asItself = one.streams.written;
      EXPECT_EQ(one.streams.written, asItself) << wait;
      EXPECT_TRUE(name == "Alder-H100D" || one.says("MCU Type is: " + name)) << one.streams.told;
    }
  }
  EXPECT_EQ(run("info --timeout 5"), 4);
  EXPECT_EQ(std::chrono::duration_cast<std::chrono::seconds>(bench.loop.now()).count(), 5);
}

// --- What went over the line. ---

TEST_F(CommandTest, ATraceIsWrittenHoweverTheRunEndsAndPlayedAgain) {
  bench.insertModel(kModel);
  EXPECT_EQ(program("--trace /t.txt -v"), 0);
  EXPECT_TRUE(bench.says(" erase     >  erase             ")) << bench.streams.told;
  EXPECT_TRUE(bench.says(" wait      >  sync                2 bytes, ")) << "once for all of them";
  const std::string live = bench.streams.told;
  EXPECT_EQ(run("trace show /t.txt"), 0);
  for (const std::string& line : {std::string("model: Ivy-H20S"), live.substr(live.find("  erase     >") - 12, 60)})
    EXPECT_TRUE(bench.writes(line)) << line;
  EXPECT_EQ(program("--trace /t.txt"), 6);
  insertFaulty("silentErase");
  EXPECT_EQ(program("--trace /t.txt --force"), 1);
  EXPECT_EQ(run("trace replay /t.txt"), 0) << bench.streams.told;
  EXPECT_TRUE(bench.writes("It ends as the trace does: failed: Erasing MCU failed."));
  sim::DemoConfig config;
  config.row = catalogue::findByName("Cedar-H80D");
  config.downloadLine = {115200, 'e'};
  bench.connectDemo(config);
  EXPECT_EQ(run("demo --model Cedar-H80D /image.bin --line 115200,e,8,1 --trace /d.txt"), 0) << bench.streams.told;
  EXPECT_EQ(run("trace replay /d.txt"), 0) << bench.streams.told;
}

TEST_F(CommandTest, EachRunHasATraceAndAFullDiskChangesNoVerdict) {
  bench.files.put("/t-2.txt", "");
  bench.insertModel(kModel);
  changeChips();
  EXPECT_EQ(program("--count 2 --trace /t.txt"), 0);
  EXPECT_TRUE(bench.files.fileExists("/t-3.txt"));
  EXPECT_TRUE(bench.files.files["/t-2.txt"].bytes.empty());
  bench.out.onNote = nullptr;
  for (const int code : {0, 1}) {
    bench.insertModel(kModel).config().faults.silentErase = code == 1;
    bench.files.diskFull = true;
    bench.streams.told.clear();
    EXPECT_EQ(program("--trace /u.txt"), code);
    const std::string why = "kvr: There is no trace of this run: /u.txt: disk full\n";
    EXPECT_TRUE(bench.says(why));
    EXPECT_EQ(bench.streams.told.find("trace"), bench.streams.told.find(why) + 17) << "one line";
  }
}

TEST_F(CommandTest, AnExampleTraceIsShown) {
  std::ifstream file(KVR_SOURCE_DIR "/tests/replay/traces/erase_without_answer.txt", std::ios::binary);
  bench.files.put("/t.txt", std::string(std::istreambuf_iterator<char>(file), {}));
  EXPECT_EQ(run("trace show /t.txt"), 0);
  EXPECT_TRUE(bench.writes("words: Erasing MCU failed."));
  EXPECT_TRUE(bench.writes(" erase     >  erase "));
  EXPECT_FALSE(bench.writes("SUM BAD"));
}

TEST_F(CommandTest, ABoardIsLoadedWithTheImageAndItsLimit) {
  sim::BoardConfig config;
  bench.connectBoard(config, Millis(500));
  EXPECT_EQ(run("board --model Ivy-H20S /image.bin --limit 12"), 0) << bench.streams.told;
  EXPECT_EQ(bench.board->journal().violationText(), "");
  EXPECT_EQ(run("board --model Ivy-H20S /image.bin --limit 0"), 2);
}

TEST_F(CommandTest, ARoutineOfTheUsersProgramIsProgrammedThrough) {
  sim::DemoConfig config;
  config.row = catalogue::findByName("Cedar-H80D");
  config.downloadLine = {115200, 'e'};
  bench.connectDemo(config);
  EXPECT_EQ(run("demo --model Cedar-H80D /image.bin --line 115200,e,8,1"), 0) << bench.streams.told;
  bench.connectDemo(config);
  EXPECT_EQ(run("demo --model Cedar-H40D /image.bin --line 115200,e,8,1"), 5) << bench.streams.told;
}

// --- What a terminal shows. ---

TEST_F(CommandTest, ATerminalHasALineForTheStageAndAPipeHasNone) {
  bench.insertModel(kModel);
  EXPECT_EQ(program(), 0);
  EXPECT_EQ(bench.streams.told.find('\r'), std::string::npos);
  bench.streams = {};
  bench.streams.terminal = true;
  bench.insertModel(kModel);
  EXPECT_EQ(program("--timeout 30"), 0);
  EXPECT_TRUE(bench.says("turn its power off and on.  0 s of 30 s"));
  EXPECT_TRUE(bench.says("Programming  [##")) << bench.streams.told;
  EXPECT_TRUE(bench.says(" kB/s"));
  EXPECT_TRUE(bench.says("again ... [00:00] )\n"));  // a message that is longer on its way than the line beside it
}

}  // namespace
}  // namespace kvr::cli
