// What a device is told to the byte, seen from its own side, in runs of the whole program.
#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "tests/support/engine_bench.h"
#include "tests/support/form_bench.h"

namespace kvr {
namespace {

using catalogue::McuRecord;
using support::FormBench;

const McuRecord& row(std::string_view name) {
  return *catalogue::findByName(name);
}

void setUp(FormBench& bench, std::string_view model, std::size_t size, std::uint64_t seed = 1) {
  bench.select(std::string(model));
  bench.form.download.cobBaudMin.setText("9600");
  bench.loadCode(support::randomBytes(seed, size));
}

bool holds(const FormBench& bench, std::uint64_t seed, std::size_t size) {
  const auto code = support::randomBytes(seed, size);
  return std::equal(code.begin(), code.end(), bench.chip->flash().begin());
}

// The code's unused tail is named from the first byte after the file, and the data memory with it where the chip was
// told so.
TEST(Told, TheEraseRangeToTheByte) {
  for (const char* name : {"Gum-H0CA", "Hazel-H0CA", "Ivy-H20S", "Juniper-H10Y", "Kauri-H0C", "Larch-H20Y", "Pine-H0BE",
                           "Quince-H0BG", "Sumac-H10A"})
    for (const std::size_t size : {1UL, 600UL, 1025UL, 2047UL})
      for (const bool clears : {false, true}) {
        const McuRecord& record = row(name);
        if (static_cast<std::int32_t>(size) >= record.apEnd) continue;
        SCOPED_TRACE(::testing::Message() << name << " " << size << (clears ? " clears" : ""));
        FormBench bench;
        setUp(bench, name, size);
        sim::ChipConfig config = sim::configFor(record);
        config.options.emplace().fill(0xFF);
        if (clears) (*config.options)[8] &= 0xFD;
        bench.insertChip(config);
        ASSERT_TRUE(bench.press(bench.form.download.comDownload[0]));
        ASSERT_TRUE(bench.passed()) << bench.pane();
        const auto [first, last] = bench.chip->eraseRange();
        EXPECT_EQ(first, std::max<std::int64_t>(static_cast<std::int64_t>(size), 512));
        EXPECT_EQ(last, clears ? record.dataEnd : std::max<std::int64_t>(record.dataStart, first));
        EXPECT_EQ(bench.chip->violationText(), "");
      }
}

// The band whose measured point comes nearest to the wanted frequency is the one that is searched.
TEST(Told, TheSearchForAFrequencyOnTheLineOfTheNearestPoint) {
  int byPoint[4] = {};
  for (const char* name : {"Pine-H03E", "Quince-H03G"})
    for (std::uint64_t seed = 1; seed <= 60; ++seed) {
      std::mt19937_64 random(seed);
      const double wanted = 5.2e6 + static_cast<double>(random() % 28000) * 1000;
      SCOPED_TRACE(::testing::Message() << name << " " << seed << " " << wanted);
      FormBench bench;
      setUp(bench, name, 100);
      bench.form.options.com_RC_frequency[5].setText(std::to_string(wanted / 1e6));
      sim::ChipConfig config = sim::configFor(row(name), 0, seed);
      config.rc.gap = seed % 2 ? 0.1 : 0.0;
      bench.insertChip(config);
      ASSERT_TRUE(bench.press(bench.form.download.comDownload[0]));
      const auto& first = bench.chip->measured(0);
      const auto& second = bench.chip->measured(1);
      ASSERT_EQ(first.size(), 6U);
      if (second.empty()) continue;
      std::vector<double> away;
      for (std::size_t i = 0; i < 4; ++i)
        away.push_back(std::abs(bench.chip->oscillator().frequency(first[i].code, first[i].fine) - wanted));
      const auto nearest = static_cast<std::size_t>(std::min_element(away.begin(), away.end()) - away.begin());
      const std::size_t other = nearest < 2 ? 2 : 0;
      if (std::min(away[other], away[other + 1]) - away[nearest] < wanted * 0.01)
        continue;  // within a measurement's step
      ++byPoint[nearest];
      EXPECT_EQ(second[0].code, first[nearest].code);
    }
  for (const int times : byPoint) EXPECT_GT(times, 1);
}

// Firmwares that keep more of the flash's top for themselves.
TEST(Told, AFileThatJustFitsUnderTheBootBlockIsWholeAndOneByteMoreIsNot) {
  for (const char* name : {"Cedar-HF8D", "Birch-LFCA", "Cedar-H20R"})
    for (const int reserved : {1, 2, 3})
      for (const std::size_t more : {0UL, 1UL}) {
        SCOPED_TRACE(::testing::Message() << name << " " << reserved << " " << more);
        sim::ChipConfig config = sim::configFor(row(name));
        config.reservedCode = reserved;
        const auto room = static_cast<std::size_t>(sim::bootStartOf(row(name), reserved));
        FormBench bench;
        setUp(bench, name, room + more);
        bench.insertChip(config);
        ASSERT_TRUE(bench.press(bench.form.download.comDownload[0]));
        const bool told = bench.pane().find("K file size for this Version firmware") != std::string::npos;
        EXPECT_EQ(told, more > 0) << bench.pane();
        EXPECT_EQ(bench.form.download.verdict.value(),
                  more > 0 ? download::VerdictKind::PassInPart : download::VerdictKind::Pass)
            << bench.pane();
        EXPECT_TRUE(holds(bench, 1, room));
        EXPECT_EQ(bench.chip->violationText(), "");
      }
}

TEST(Told, TheSecondsThatTheEraseTook) {
  FormBench bench;
  setUp(bench, "Ivy-H20S", 1500);
  sim::ChipConfig config = sim::configFor(row("Ivy-H20S"));
  config.times.eraseSector = 200 * sim::kMillisecond;
  bench.insertChip(config);
  ASSERT_TRUE(bench.press(bench.form.download.comDownload[0]));
  EXPECT_TRUE(bench.passed());
  const auto& stated = bench.chip->journal().statedTimes();
  const auto erase =
      std::find_if(stated.begin(), stated.end(), [](const auto& s) { return s.what.starts_with("erases"); });
  ASSERT_NE(erase, stated.end());
  ASSERT_EQ((erase->to - erase->from) / sim::kSecond, 3);
  EXPECT_NE(bench.pane().find("We are erasing MCU flash... ( [00:03] )"), std::string::npos) << bench.pane();
}

// A window in which a chip has asked for start pairs takes one that sends none.
TEST(Told, AChipWithoutStartPairsAfterOneThatAskedForThem) {
  for (const char* name : {"Cedar-H20R", "Birch-L20A", "Ivy-H20S", "Pine-H03E"}) {
    SCOPED_TRACE(name);
    FormBench bench;
    setUp(bench, name, 1000);
    for (const bool bare : {false, true, false, true}) {
      sim::ChipConfig config = sim::configFor(row(name));
      config.startPair = !bare;
      config.bareReplies = bare;
      config.directStatus = true;
      bench.insertChip(config);
      ASSERT_TRUE(bench.press(bench.form.download.comDownload[0]));
      EXPECT_TRUE(bench.passed()) << bench.pane();
      EXPECT_TRUE(holds(bench, 1, 1000));
    }
  }
}

// What an ordinary run worked out for its rate is nothing to a run on the fixed link.
TEST(Told, NoReloadValueOfAnEarlierRunOnTheFixedLink) {
  FormBench bench;
  setUp(bench, "Cedar-HF8D", 1000);
  for (auto* button : {&bench.form.download.comDownload[0], &bench.form.download.Command2}) {
    sim::ChipConfig config = sim::configFor(row("Cedar-HF8D"));
    config.options.emplace().fill(0x33);
    bench.insertChip(config);
    ASSERT_TRUE(bench.press(*button));
    EXPECT_TRUE(bench.passed()) << bench.pane();
    EXPECT_EQ(bench.chip->optionWrites(), 1);
    EXPECT_EQ(bench.chip->violationText(), "");
  }
}

}  // namespace
}  // namespace kvr
