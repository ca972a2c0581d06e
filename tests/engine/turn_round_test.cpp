// What passes between a chip's last byte and the next frame: as little as the chip can stand, and never less.
#include <gtest/gtest.h>

#include <set>

#include "tests/support/engine_bench.h"
#include "tests/support/models.h"

namespace kvr {
namespace {

using sim::Direction;
using support::EngineBench;
using support::Millis;

bool isDataFrame(const sim::Unit& unit) {
  const bool whole = unit.direction == Direction::hostToDevice && unit.bytes.size() > 6 && unit.bytes[0] == 0x46;
  return whole && (unit.bytes[5] == 0x00 || unit.bytes[5] == 0x30);
}

bool repeats(const sim::Unit& unit) {
  return isDataFrame(unit) && unit.bytes[5] == 0x30;
}

// The silence before each frame that follows something the chip said: of data frames, and of all others.
struct Silences {
  std::vector<sim::Micros> data, others;
  explicit Silences(std::span<const sim::Unit> log) {
    const sim::Unit* before = nullptr;
    for (const sim::Unit& unit : log) {
      const bool frame = unit.direction == Direction::hostToDevice && unit.bytes.size() > 6;
      if (frame && before) (isDataFrame(unit) ? data : others).push_back(unit.start - before->end);
      if (frame || unit.direction == Direction::deviceToHost) before = frame ? nullptr : &unit;
    }
    if (!data.empty()) data.erase(data.begin());  // an erase has a rest of its own
  }
};

struct Station : EngineBench {
  explicit Station(const std::string& name, sim::WireConfig config = {}) : EngineBench(std::move(config)) {
    select(name);
    bauds("9600", "115200");
    loadCode(3, 1500);
  }
  // One chip more, which hears nothing for so long after each answer; returns the frames that were repeated.
  long run(sim::Micros deaf) {
    auto config = sim::configFor(*catalogue::findByName(model.record.name));
    config.times.deaf = deaf;
    insertChip(config);
    from_ = wire.log().size();
    EXPECT_TRUE(program());
    return std::count_if(log().begin(), log().end(), repeats);
  }
  std::span<const sim::Unit> log() const { return std::span(wire.log()).subspan(from_); }
  std::string wrong() const {
    return (passed() ? flashDifference() : "failed; ") + notAtRest() + chip->violationText();
  }

 private:
  std::size_t from_ = 0;
};

std::set<std::string> modelsOfEveryFamily() {
  std::set<std::string> names;
  for (const auto* row : support::endsOfEachFamily([](const auto&) { return true; })) names.emplace(row->name);
  return names;
}

TEST(TurnRound, AChipThatIsDeafForAWhileLosesOneRetryAndThenNone) {
  for (const std::string& model : modelsOfEveryFamily())
    for (const int deafMs : {0, 1, 2, 5, 9}) {
      SCOPED_TRACE(model + ", deaf for " + std::to_string(deafMs) + " ms");
      Station station(model);
      const bool needsRest = deafMs > 1;
      EXPECT_EQ(station.run(deafMs * sim::kMillisecond), needsRest ? 1 : 0);
      EXPECT_EQ(station.wrong(), "") << station.text();
      EXPECT_EQ(station.outcome().turnRound, Millis(needsRest ? 10 : 1));
      EXPECT_EQ(station.run(deafMs * sim::kMillisecond), 0) << "the next chip of the model";
      EXPECT_EQ(station.wrong(), "") << station.text();
    }
}

// Ten milliseconds have always been too little for such a chip: it fails in words, and nothing is taken for good.
TEST(TurnRound, AChipThatIsDeafForLongerFailsInWordsOrPassesWhole) {
  for (const std::string& model : modelsOfEveryFamily()) {
    SCOPED_TRACE(model);
    Station station(model);
    station.run(11 * sim::kMillisecond);
    const auto& outcome = station.outcome();
    EXPECT_EQ(station.notAtRest() + station.chip->violationText(), "") << station.text();
    EXPECT_EQ(station.passed() ? station.flashDifference() : "", "");
    EXPECT_TRUE(station.passed() || (station.says(outcome.words) && !outcome.words.empty())) << station.text();
    EXPECT_TRUE(outcome.stage < engine::Stage::Program || outcome.turnRound == Millis(10));
  }
}

TEST(TurnRound, IsOneMillisecondBeforeDataAndTenBeforeAllElseUntilAFrameFails) {
  const auto all = [](const std::vector<sim::Micros>& silences, sim::Micros least, sim::Micros most) {
    return std::all_of(silences.begin(), silences.end(), [&](auto us) { return us >= least && us <= most; });
  };
  for (const std::string& model : modelsOfEveryFamily()) {
    SCOPED_TRACE(model);
    Station station(model);
    EXPECT_EQ(station.run(0), 0);
    const Silences good(station.log());
    EXPECT_GE(good.data.size(), 8U);
    EXPECT_TRUE(all(good.data, 1000, 1010)) << testing::PrintToString(good.data);
    EXPECT_TRUE(all(good.others, 10000, 2000000)) << testing::PrintToString(good.others);
    station.panel.cheSlowAnswers.userSet(true);
    station.run(0);
    const Silences slow(station.log());
    EXPECT_TRUE(all(slow.data, 10000, 11000)) << testing::PrintToString(slow.data);
    EXPECT_EQ(station.outcome().turnRound, Millis(10));
    station.panel.cheSlowAnswers.userSet(false);
    station.run(0);
    EXPECT_EQ(station.outcome().turnRound, Millis(1)) << "what was asked for has taught nothing";
  }
}

TEST(TurnRound, IsRememberedByModelUntilTheProgramEnds) {
  Station station("Ivy-HF0S");
  station.run(5 * sim::kMillisecond);
  station.select("Ivy-H20S");
  station.loadCode(3, 1500);
  EXPECT_EQ(station.run(0), 0);
  EXPECT_EQ(station.outcome().turnRound, Millis(1));
  station.select("Ivy-HF0S");
  station.loadCode(3, 1500);
  EXPECT_EQ(station.run(0), 0);
  EXPECT_EQ(station.outcome().turnRound, Millis(10));
}

// An answer that goes on after a place where it might have ended: the sum of what came so far, an end byte, and then a
// whole good frame of its own that says something else. It must be taken as the long one that it is, wherever it halts.
sim::Bytes withGoodSumsInside(std::uint8_t command, std::uint8_t echo, bool wide) {
  const std::uint8_t other = static_cast<std::uint8_t>(echo ^ 0xFF);
  const sim::Bytes inner = sim::buildReply(command, {&other, 1}, wide);
  const int length = static_cast<int>(inner.size()) + (wide ? 11 : 9);
  sim::Bytes payload = {echo};
  const int sum = 0x68 + length + command + echo;
  if (wide) payload.push_back(static_cast<std::uint8_t>(sum >> 8));
  payload.insert(payload.end(), {static_cast<std::uint8_t>(sum), 0x16});
  payload.insert(payload.end(), inner.begin(), inner.end());
  return sim::buildReply(command, payload, wide);
}

TEST(GatheringWait, IsNotEndedByGoodSumsInsideALongerAnswer) {
  for (const char* model : {"Ivy-HF0S", "Cedar-H10R"}) {
    Station station(model);
    auto config = sim::configFor(*catalogue::findByName(model));
    auto& chip = station.insertChip(config);
    std::size_t answers = 0;
    chip.say = [&, wide = config.row->frame2, say = chip.say](sim::Micros at, const sim::Line& line,
                                                              std::span<const std::uint8_t> frame) {
      if (chip.state() != sim::ChipState::session || chip.dataFrames() == 0 || frame.size() > 10 || frame.size() < 9)
        return say(at, line, frame);
      const sim::Bytes longer = withGoodSumsInside(frame[5], frame[6], wide);
      const std::size_t halt = 1 + answers++ % (longer.size() - 1);
      const sim::Micros half = say(at, line, std::span(longer).first(halt));
      return say(half + 3000, line, std::span(longer).subspan(halt));
    };
    EXPECT_TRUE(station.program());
    EXPECT_GT(answers, 8U);
    EXPECT_EQ(station.wrong(), "") << model << station.text();
    EXPECT_EQ(station.outcome().turnRound, Millis(1)) << "each answer was taken for what it is";
  }
}

// A frame in pieces, in the packets of an adapter, and with noise after its end: a run is as good as ever.
TEST(GatheringWait, TakesFramesHoweverTheyCome) {
  for (const char* model : {"Ivy-HF0S", "Alder-H80D", "Pine-H03"})
    for (const sim::Micros latency : {0, 1000, 2000, 16000}) {
      Station good(model, {.adapterLatency = latency});
      good.run(500);
      ASSERT_EQ(good.wrong(), "") << model << good.text();
      std::set<std::pair<Direction, std::size_t>> seen;
      for (const sim::Unit& unit : good.log()) {
        if (unit.bytes.size() < 3 || !seen.emplace(unit.direction, unit.bytes.size()).second) continue;
        for (int byte = 1; byte < static_cast<int>(unit.bytes.size()); ++byte)
          for (const auto kind : {sim::FaultKind::split, sim::FaultKind::noiseAfter}) {
            if (kind == sim::FaultKind::noiseAfter && byte > 12) continue;
            const sim::Fault fault{unit.direction, unit.index, kind, byte, 1, 4 * sim::kMillisecond};
            Station station(model, {.adapterLatency = latency, .keepLog = false, .faults = {fault}});
            station.run(500);
            ASSERT_EQ(station.wrong(), "") << model << ", " << sim::describe(fault) << station.text();
          }
      }
    }
}

}  // namespace
}  // namespace kvr
