// What follows the end of a run: what is offered after a failure, and the run as a picture.
#include <gtest/gtest.h>

#include "download/run_picture.h"
#include "tests/support/engine_bench.h"
#include "tests/support/form_bench.h"

namespace kvr::download {
namespace {

using engine::Ending;
using engine::Outcome;
using engine::RunKind;
using engine::Stage;
using platform::Micros;
using platform::Millis;

constexpr std::array kRates = {9600, 115200, 57600, 2400};

Outcome failedAt(Stage stage, int firstBaud, int triedBaud) {
  return {.stage = stage, .firstBaud = firstBaud, .triedBaud = triedBaud};
}

TEST(Remedy, IsWhatTheOutcomeSuggests) {
  const auto lower = [](Stage stage, int first, int tried) {
    return remedyOf(failedAt(stage, first, tried), "Ivy-HF0S", kRates).baud;
  };
  EXPECT_EQ(lower(Stage::Program, 2400, 115200), 57600);
  EXPECT_EQ(lower(Stage::Erase, 2400, 57600), 9600);
  EXPECT_EQ(lower(Stage::Baud, 2400, 38400), 9600) << "the search has been down there in vain";
  EXPECT_EQ(lower(Stage::Program, 9600, 57600), 9600);
  EXPECT_EQ(lower(Stage::Program, 9600, 9600), 0) << "there is no lower one";
  EXPECT_EQ(lower(Stage::Program, 2400, 0), 0) << "the rate was not chosen";
  EXPECT_EQ(lower(Stage::Options, 2400, 115200), 0);
  EXPECT_EQ(lower(Stage::Identify, 2400, 115200), 0);
  for (const auto& change : std::initializer_list<void (*)(Outcome&)>{
           [](Outcome& o) { o.ending = Ending::Stopped; }, [](Outcome& o) { o.ending = Ending::Passed; },
           [](Outcome& o) { o.portLost = true; }, [](Outcome& o) { o.kind = RunKind::Board; }}) {
    Outcome outcome = failedAt(Stage::Program, 2400, 115200);
    change(outcome);
    EXPECT_EQ(remedyOf(outcome, "Ivy-HF0S", kRates), Remedy{});
  }
  Outcome wrong{.wrongModel = true, .chip = engine::ChipSeen{.model = "Rowan-H20"}};
  EXPECT_EQ(remedyOf(wrong, "Ivy-HF0S", kRates), Remedy{.model = "Rowan-H20"});
  EXPECT_EQ(remedyOf(wrong, "Rowan-H20", kRates), Remedy{}) << "selecting it again changes nothing";
  for (const char* unknown : {"", "Rowan-X99"}) {
    wrong.chip->model = unknown;
    EXPECT_EQ(remedyOf(wrong, "Ivy-HF0S", kRates), Remedy{});
  }
}

struct Aftermath : ::testing::Test {
  Aftermath() {
    bench.form.download.cobBaudMin.setText("2400");
    load("Ivy-HF0S");
  }
  void load(const char* model) {
    bench.select(model);
    bench.loadCode(support::randomBytes(5, 3000));
  }
  void insert(const char* model, int failures = 0) {
    auto config = sim::configFor(*catalogue::findByName(model));
    if (failures > 0) config.faults.failsBlocks = {{2, failures}};
    bench.insertChip(config);
  }
  DownloadPanel& panel() { return bench.form.download; }
  bool program() { return bench.press(panel().comDownload[0]); }
  bool offers() { return panel().comSelectSeen.visible() || panel().comLowerBaud.visible(); }
  support::FormBench bench;
};

TEST_F(Aftermath, TheModelOfAnotherChipIsSelectedByItsButtonAlone) {
  insert("Ivy-H20S");
  ASSERT_TRUE(program());
  ASSERT_TRUE(panel().comSelectSeen.visible()) << bench.pane();
  EXPECT_EQ(panel().comSelectSeen.caption(), "Select Ivy-H20S");
  EXPECT_EQ(bench.form.model.name(), "Ivy-HF0S");
  bench.form.lock.set(platform::UiLock::kLocked);
  EXPECT_FALSE(panel().comSelectSeen.enabled());
  bench.form.lock.set(platform::UiLock::kFree);
  panel().comSelectSeen.press();
  EXPECT_EQ(bench.form.model.name(), "Ivy-H20S");
  EXPECT_FALSE(offers());
  EXPECT_EQ(panel().verdict.value(), VerdictKind::Idle);
  load("Ivy-H20S");
  insert("Ivy-H20S");
  ASSERT_TRUE(program());
  EXPECT_TRUE(bench.passed()) << bench.pane();
  EXPECT_FALSE(offers());
}

TEST_F(Aftermath, FailedDataAreTriedAgainAtALowerRateByTheirButtonAlone) {
  insert("Ivy-HF0S", 4);
  ASSERT_TRUE(program());
  ASSERT_TRUE(panel().comLowerBaud.visible()) << bench.pane();
  EXPECT_EQ(panel().comLowerBaud.caption(), "Lower Max Baud to 57600 and try again");
  EXPECT_EQ(panel().cobBaudMax.text(), "115200");
  bench.chip->powerOff((bench.loop.now() + Millis(10)).count());
  bench.chip->powerOn((bench.loop.now() + Millis(500)).count());
  ASSERT_TRUE(bench.press(panel().comLowerBaud));
  EXPECT_TRUE(bench.passed()) << bench.pane();
  EXPECT_EQ(panel().cobBaudMax.text(), "57600");
  EXPECT_EQ(bench.form.results.history().last()->outcome.baud, 57600);
  EXPECT_FALSE(offers());
}

TEST_F(Aftermath, AnOfferGoesWithWhatItWasMadeFor) {
  const std::pair<const char*, std::function<void()>> changes[] = {
      {"model", [this] { bench.select("Ivy-H20S"); }},
      {"file", [this] { bench.loadCode(support::randomBytes(6, 3000)); }},
      {"rate", [this] { panel().cobBaudMax.userPick(8); }},
      {"run", [this] {
         bench.loop.after(Millis(1000), [this] {
           EXPECT_FALSE(offers());
           bench.form.downloads.stop();
         });
         EXPECT_TRUE(program());
       }}};
  for (const auto& [what, change] : changes) {
    load("Ivy-HF0S");
    panel().cobBaudMax.userPick(0);
    insert("Ivy-HF0S", 4);
    ASSERT_TRUE(program());
    ASSERT_TRUE(offers()) << what << bench.pane();
    bench.wire.connect(nullptr);
    change();
    EXPECT_FALSE(offers()) << what;
  }
}

TEST_F(Aftermath, ARunBecomesAPictureOfItsStagesAndSetbacks) {
  EXPECT_FALSE(panel().comLastRun.enabled());
  insert("Ivy-HF0S");
  ASSERT_TRUE(program());
  ASSERT_TRUE(bench.passed());
  EXPECT_TRUE(panel().comLastRun.enabled());
  const RunHistory& history = bench.form.results.history();
  EXPECT_EQ(history.toCompare(), nullptr);
  const RunPicture good = pictureOf(*history.last());
  EXPECT_TRUE(good.title.ends_with("Ivy-HF0S  PASS"));
  EXPECT_NE(good.figures.find(" kB/s, at 115200 baud"), std::string::npos) << good.figures;
  EXPECT_TRUE(good.marks.empty());
  Micros at{0};
  for (const auto& bar : good.bars) {
    EXPECT_EQ(bar.from, at) << bar.name;
    at += bar.length;
  }
  EXPECT_EQ(at, good.length);
  insert("Ivy-HF0S", 4);
  ASSERT_TRUE(program());
  const RunPicture bad = pictureOf(*history.last());
  EXPECT_EQ(pictureOf(*history.toCompare()).title, good.title);
  ASSERT_EQ(bad.marks.size(), 4U);  // three more tries, and the end
  const auto& data = *std::find_if(bad.bars.begin(), bad.bars.end(), [](auto& b) { return b.stage == Stage::Program; });
  for (const auto& mark : bad.marks) EXPECT_TRUE(mark.at > data.from && mark.at <= data.from + data.length);
  EXPECT_TRUE(bad.marks.back().loss);
  EXPECT_TRUE(bad.failure.starts_with("Programing failed."));
  EXPECT_EQ(axisStep(Micros(10'000'001)), Micros(2'000'000));
  EXPECT_EQ(axisStep(Micros(0)), Micros(1000));
  for (const auto& [us, text] : {std::pair(45'000, "0.04 s"), {12'340'000, "12.3 s"}, {130'400'000, "130 s"}})
    EXPECT_EQ(secondsText(Micros(us)), text);
}

TEST(RunHistory, ComparesWithTheLastGoodRunOfTheModelAfterAFailure) {
  RunHistory history;
  const auto add = [&](const char* time, const char* model, Ending ending) {
    history.add({.outcome = {.ending = ending}, .time = time, .model = model, .serialNumber = {}});
    return history.toCompare() ? history.toCompare()->time : "none";
  };
  EXPECT_EQ(add("1", "A", Ending::Passed), "none");
  EXPECT_EQ(add("2", "B", Ending::Failed), "1");
  EXPECT_EQ(add("3", "A", Ending::Failed), "1");
  EXPECT_EQ(add("4", "A", Ending::Refused), "1") << "no run";
  EXPECT_EQ(add("5", "A", Ending::Passed), "3");
  EXPECT_EQ(add("6", "A", Ending::Stopped), "5");
}

}  // namespace
}  // namespace kvr::download
