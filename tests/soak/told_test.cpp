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
