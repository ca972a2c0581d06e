// A run by itself: a job, a port, a loop and a clock go in, an outcome comes out. No form, no panel.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>

#include "catalogue/mcu_record.h"
#include "engine/chip_run.h"
#include "sim/chip.h"
#include "tests/support/engine_bench.h"
#include "tests/support/virtual_world.h"

namespace kvr::engine {
namespace {

using support::randomBytes;

JobImage imageOf(std::uint64_t seed, std::size_t size) {
  JobImage image{.bytes = randomBytes(seed, size), .loaded = true};
  image.rangeEnd = std::max<std::int32_t>(static_cast<std::int32_t>(size) - 1, 511);
  return image;
}

Job jobFor(std::string_view model, std::size_t size, std::uint64_t seed = 1) {
  Job job{.model = catalogue::describeModel(*catalogue::findByName(model)), .imageValid = true};
  job.code = imageOf(seed, size);
  job.choices = options::defaultValues(job.record().family);
  job.wantedFrequencyHz = 11059200;
  job.firstBaud = 9600;
  job.frameSize = frameSizeOf(job.record(), false);
  return job;
}

// What the pane would show.
struct Heard : SilentView {
  void say(const std::string& line) override { text += "\n" + line; }
  bool says(std::string_view words) const { return text.find(words) != std::string::npos; }
  std::string text;
};

struct RunBench : support::VirtualWorld {
  explicit RunBench(const sim::WireConfig& config = {}) : VirtualWorld(config) {}
  sim::Chip& insert(const sim::ChipConfig& config) { return insertChip(config, Millis(200)); }
  Outcome program(const Job& job) {
    NoBooks none;
    return program(job, none);
  }
  Outcome program(const Job& job, RunBooks& books) {
    stop.clear();
    return ChipRun(job, services, view).program(books);
  }
  bool holds(const Job& job, std::size_t size) const {
    return std::equal(job.code.bytes.begin(), job.code.bytes.begin() + static_cast<std::ptrdiff_t>(size),
                      chip->flash().begin());
  }
  RunStop stop;
  PortLease lease{loop, link};
  RunServices services{loop, clock, lease, stop};
  Heard view;
};

sim::ChipConfig chipFor(std::string_view model, std::uint64_t seed = 1) {
  return sim::configFor(*catalogue::findByName(model), 11059200, seed);
}

TEST(Run, ProgramsAChipFromAJobWithNothingButEngineWireAndChip) {
  RunBench bench;
  bench.insert(chipFor("Ivy-HF0S"));
  const Job job = jobFor("Ivy-HF0S", 3000);
  const Outcome outcome = bench.program(job);
  EXPECT_EQ(outcome.ending, Ending::Passed) << outcome.words;
  EXPECT_EQ(outcome.chip->model, "Ivy-HF0S");
  EXPECT_EQ(outcome.bytesSent, 3072);
  EXPECT_TRUE(bench.holds(job, 3000));
  EXPECT_FALSE(bench.link.isOpen());
}

TEST(Run, RefusesAJobThatCannotWorkWithoutOpeningThePort) {
  RunBench bench;
  Job job = jobFor("Pine-H03E", 500);
  job.wantedFrequencyHz = 1000;
  EXPECT_EQ(bench.program(job).ending, Ending::Refused);
  EXPECT_EQ(bench.program(Job{.model = job.model}).words, "Please open code file.");
  EXPECT_EQ(bench.link.opens, 0);
}

TEST(Run, TellsWhatAFirmwareCutsOffAndLetsNoSerialNumberGoWithIt) {
  for (const int firmware : {0x50, 0x63}) {
    SCOPED_TRACE(firmware);
    RunBench bench;
    sim::ChipConfig config = chipFor("Ivy-HF0S");
    config.firmware = firmware;
    bench.insert(config);
    Job job = jobFor("Ivy-HF0S", 60 * 1024);
    const Outcome outcome = bench.program(job);
    ASSERT_TRUE(outcome.passed()) << outcome.words;
    const bool cut = firmware == 0x50;
    EXPECT_EQ(outcome.ending, cut ? Ending::PassedInPart : Ending::Passed);
    EXPECT_EQ(bench.view.says("left out"), cut);
    const auto lost = cut ? std::count_if(job.code.bytes.begin() + 0x3000, job.code.bytes.end(),
                                          [](std::uint8_t byte) { return byte != 0; })
                          : 0;
    EXPECT_EQ(outcome.bytesLeftOut, lost);
    EXPECT_TRUE(bench.holds(job, cut ? 0x3000 : 60 * 1024));

    bench.insert(config);
    job.codeNumbers = {{0x2FFE, 0x3001}};
    EXPECT_EQ(bench.program(job).passed(), !cut);
    EXPECT_EQ(bench.chip->erases(), cut ? 0 : 1);
  }
}

// Books that answer as they are told, and keep what they were asked.
struct HeardBooks : RunBooks {
  explicit HeardBooks(RunBench& bench) : bench_(bench) {}
  BooksAnswer claim(Job& job) override {
    erasesAtClaim = bench_.chip->erases();
    job.code.bytes[0x40] = 0xA7;
    return claimAnswer;
  }
  BooksAnswer record(const Outcome& outcome) override {
    recorded.push_back(outcome);
    return recordAnswer;
  }
  BooksAnswer claimAnswer, recordAnswer;
  int erasesAtClaim = -1;
  std::vector<Outcome> recorded;

 private:
  RunBench& bench_;
};

TEST(Run, TakesItsNumberFromTheBooksBeforeTheEraseAndPassesOnlyWithARow) {
  const BooksAnswer full{BooksFault::Refused, "The batch is full."}, gone{BooksFault::Unreachable, "No store."};
  struct Case {
    const char* chip;
    BooksAnswer claim, record;
    Ending ending;
    int claims, erases;
  };
  const Case cases[] = {
      {"Ivy-HF0S", {}, {}, Ending::Passed, 1, 1},     {"Ivy-HF0S", full, {}, Ending::Refused, 1, 0},
      {"Ivy-HF0S", gone, gone, Ending::Failed, 1, 0}, {"Ivy-HF0S", {}, gone, Ending::Failed, 1, 1},
      {"Ivy-H20S", {}, {}, Ending::Failed, 0, 0},
  };
  for (const Case& one : cases) {
    RunBench bench;
    bench.insert(chipFor(one.chip));
    HeardBooks books(bench);
    books.claimAnswer = one.claim, books.recordAnswer = one.record;
    Job job = jobFor("Ivy-HF0S", 3000);
    job.handOver = true;
    const Outcome outcome = bench.program(job, books);
    EXPECT_EQ(outcome.ending, one.ending) << outcome.words;
    EXPECT_EQ(books.erasesAtClaim, one.claims == 1 ? 0 : -1);
    EXPECT_EQ(bench.chip->erases(), one.erases);
    EXPECT_EQ(books.recorded.size(), 1u);
    EXPECT_EQ(outcome.passed(), bench.link.isOpen());
    EXPECT_EQ(bench.chip->flash()[0x40] == 0xA7, one.erases == 1);
    EXPECT_EQ(outcome.books == BooksFault::Unreachable, !one.record.fine());
  }
}

TEST(Run, SendsNothingAndErasesNothingForAnImageThatLiesBeyondTheChip) {
  RunBench bench;
  bench.insert(chipFor("Rowan-H20"));
  Job job = jobFor("Rowan-H20", 64 * 1024);
  job.code.rangeStart = job.record().dataEnd + 1000;
  EXPECT_EQ(bench.program(job).ending, Ending::Failed);
  EXPECT_EQ(bench.chip->erases(), 0);
}

// The number of the last short frame with this command that a device has sent.
int lastShortAnswer(const RunBench& bench, std::uint8_t command) {
  int found = -1;
  for (const sim::Unit& unit : bench.wire.log())
    if (unit.direction == sim::Direction::deviceToHost && unit.bytes.size() < 10 && unit.bytes[5] == command)
      found = unit.index;
  return found;
}

sim::Fault late(int unit, int millis) {
  return {sim::Direction::deviceToHost, unit, sim::FaultKind::delay, 0, 0, millis * sim::kMillisecond};
}

// "Done" comes so late that the option frame was sent again: the second one arrives while the options are read, and
// tells nothing of what the chip holds.
TEST(Run, TakesNoShortFrameForTheOptionsThatAChipHolds) {
  sim::ChipConfig config = chipFor("Elm-L14A");
  config.faults.optionsDoNotStick = true;
  config.options.emplace().fill(0x33);
  const Job job = jobFor("Elm-L14A", 600);
  RunBench first;
  first.insert(config);
  EXPECT_FALSE(first.program(job).passed());
  const int done = lastShortAnswer(first, 0x80);
  ASSERT_GE(done, 0);
  for (int delay = 2480; delay <= 2560; delay += 2) {
    RunBench bench({.faults = {late(done, delay)}});
    bench.insert(config);
    EXPECT_FALSE(bench.program(job).passed()) << delay << bench.view.text;
  }
}

// Both answers to the change of speed come late, the second one while the erase is being waited for, and the chip never
// erases.
TEST(Run, TakesNoLateAnswerToTheChangeOfSpeedForAnErase) {
  for (const char* model : {"Cedar-H40D", "Alder-H80D", "Fir-H28A"}) {
    const Job job = jobFor(model, 600);
    RunBench good;
    good.insert(chipFor(model));
    ASSERT_TRUE(good.program(job).passed());
    const int changed = lastShortAnswer(good, 0x8E);
    sim::ChipConfig config = chipFor(model);
    config.faults.silentErase = true;
    for (int delay = 1080; delay <= 1200; delay += 10)
      for (int second = 900; second <= 2100; second += 200) {
        RunBench bench({.keepLog = false, .faults = {late(changed, delay), late(changed + 1, second)}});
        bench.insert(config);
        EXPECT_FALSE(bench.program(job).passed()) << model << " " << delay << " " << second << bench.view.text;
      }
  }
}

TEST(Run, EndsAtOnceWhenThePortCannotBeOpenedAgainAndBlamesThePort) {
  const platform::PortError busy{platform::PortError::Kind::Busy, "/dev/ttyV0: in use by another program"};
  for (const bool fixedLink : {false, true}) {
    RunBench whole;
    whole.insert(chipFor("Cedar-HF8D"));
    Job job = jobFor("Cedar-HF8D", 600);
    job.fixedLink = fixedLink;
    ASSERT_TRUE(whole.program(job).passed());
    for (int opening = 2; opening <= whole.link.opens; ++opening) {
      SCOPED_TRACE(opening);
      RunBench bench;
      bench.insert(chipFor("Cedar-HF8D"));
      bench.link.refusesAfter = opening - 1;
      bench.link.refusesToOpen = busy;
      const Outcome outcome = bench.program(job);
      const bool alreadyGood = outcome.passed();  // only the end of the session was left to be sent
      if (alreadyGood) continue;
      EXPECT_EQ(outcome.ending, Ending::Failed);
      EXPECT_NE(outcome.words.find("in use by another program"), std::string::npos) << outcome.words;
      EXPECT_FALSE(bench.view.says("Erasing MCU failed") || bench.view.says("Setting options failed") ||
                   bench.view.says("Connection failed"))
          << bench.view.text;
    }
  }
}

// --- Nothing lives longer than its run. ---

std::string withoutTimes(std::string text) {
  std::erase_if(text, [](char c) { return c >= '0' && c <= '9'; });
  return text;
}

struct Pair {
  Job job;
  sim::ChipConfig chip;
};

Pair randomPair(std::mt19937_64& random) {
  static const auto rows = catalogue::allRows();
  const catalogue::McuRecord* row = nullptr;
  while (!row || row->name.empty()) row = &rows[random() % rows.size()];
  Pair pair{jobFor(row->name, 100 + random() % 900, random()), chipFor(row->name, random())};
  pair.job.fixedLink = random() % 8 == 0 && !pair.job.model.traits().pulses();
  pair.job.frameSize = frameSizeOf(pair.job.record(), pair.job.fixedLink);
  if (row->family <= catalogue::Family::Cedar) pair.chip.shortStatus = random() % 2 == 0;
  if (random() % 5 == 0) pair.chip = chipFor(rows[random() % rows.size()].name, random());
  if (random() % 6 == 0) pair.chip.faults.silentErase = true;
  return pair;
}

std::string told(RunBench& bench, const Pair& pair) {
  bench.view.text.clear();
  bench.insert(pair.chip);
  platform::Timer guard(bench.loop, [&] { bench.stop.request(); });
  guard.start(Millis(60000));
  const Outcome outcome = bench.program(pair.job);
  std::string all = std::to_string(static_cast<int>(outcome.ending)) + std::to_string(static_cast<int>(outcome.stage)) +
                    std::to_string(outcome.baud) + "," + std::to_string(outcome.bytesSent) + ",";
  if (outcome.chip) all += outcome.chip->model + outcome.chip->code + outcome.chip->firmware;
  all += withoutTimes(outcome.words + bench.view.text);
  const auto flash = bench.chip->flash();
  all.append(flash.begin(), flash.end());
  for (const std::uint8_t option : bench.chip->options()) all += static_cast<char>(option);
  return all;
}

TEST(Run, LeavesNothingBehindForTheNextOne) {
  const char* count = std::getenv("KVR_PAIR_COUNT");
  const std::uint64_t pairs = count ? std::strtoull(count, nullptr, 10) : 400;
  for (std::uint64_t seed = 1; seed <= pairs; ++seed) {
    std::mt19937_64 random(seed);
    const Pair first = randomPair(random), second = randomPair(random);
    RunBench used, fresh;
    (void)told(used, first).size();
    ASSERT_EQ(told(used, second), told(fresh, second))
        << "seed " << seed << ": " << second.job.model.name() << " after " << first.job.model.name() << used.view.text
        << "\n--- fresh" << fresh.view.text;
  }
}

}  // namespace
}  // namespace kvr::engine
