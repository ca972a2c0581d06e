// Every model with options chosen at random on its panel: what the chip then holds, what the report says of it, and
// that a second run of the same chip sends no option frame where the chip has nothing to learn.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "tests/support/engine_bench.h"
#include "tests/support/models.h"

namespace kvr {
namespace {

using support::EngineBench;

// The bytes that a family's chips keep.
std::vector<std::size_t> keptBytes(int family) {
  if (family == 2 || (family >= 11 && family <= 13)) return {1};
  if (family >= 3 && family <= 5) return {0, 2, 3, 8};
  if (family == 6) return {0, 2, 3, 8};
  if (family >= 7 && family <= 10) return {0, 1, 2, 3, 8, 9};
  if (family == 18) return {0, 3, 4, 8, 10, 11};
  if (family >= 15 && family <= 17) return {0, 1, 2, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15};
  return {};
}

void chooseAtRandom(EngineBench& bench, std::mt19937_64& random) {
  for (const auto& group : bench.options.groups()) {
    std::vector<platform::OptionButton*> open;
    for (auto* button : group.buttons)
      if (button->enabled() && button->visible()) open.push_back(button);
    if (!open.empty()) open[random() % open.size()]->userChoose();
    if (!group.list || !group.list->enabled() || group.list->items().empty()) continue;
    // The wanted frequency stays: not every chip reaches every one, and that has tests of its own.
    if (group.list != &bench.optionPanel.com_RC_frequency[5])
      group.list->userPick(static_cast<int>(random() % group.list->items().size()));
  }
}

bool alwaysWrites(int family) {
  // Rowan's first status frame does not tell all that its options are compared by.
  return family == 0 || family >= 15;
}

// Families 3 and up skip the frame only for chips that run from an external clock.
bool mayLeaveOut(const EngineBench& bench) {
  const int family = sim::familyOf(bench.model.record);
  if (alwaysWrites(family)) return false;
  return family < 3 || (family >= 11 && family <= 13) || bench.options.chosen("Exterior_Oscillate");
}

std::string runOne(const std::string& name, std::uint64_t seed) {
  EngineBench bench;
  std::mt19937_64 random(seed);
  bench.select(name);
  bench.bauds("9600", "115200");
  auto& chip = bench.insertChip(support::Millis(100), seed);
  bench.loadCode(seed, 600);
  chooseAtRandom(bench, random);
  std::string faults;
  if (!bench.program() || !bench.passed())
    return "first run failed: " + (bench.records.empty() ? bench.text() : bench.outcome().words);
  const auto wanted = bench.wanted();
  const auto& record = bench.model.record;
  if (record.noOptions || record.topBlockFree || sim::familyOf(record) == 1) return chip.violationText();
  for (const std::size_t i : keptBytes(sim::familyOf(record)))
    if (chip.options()[i] != wanted[i])
      faults += "byte " + std::to_string(i) + " is " + std::to_string(chip.options()[i]) + ", wanted " +
                std::to_string(wanted[i]) + "; ";
  const int writes = chip.optionWrites();
  if (writes == 0 && !mayLeaveOut(bench)) faults += "no option frame; ";
  chip.powerOff(bench.loop.now().count());
  chip.powerOn((bench.loop.now() + support::Millis(200)).count());
  if (!bench.program() || !bench.passed()) return faults + "second run failed: " + bench.outcome().words;
  const bool wrote = chip.optionWrites() > writes;
  if (wrote == mayLeaveOut(bench)) faults += wrote ? "a second option frame; " : "the clock was not sent again; ";
  return faults + chip.violationText();
}

TEST(OptionSweep, EveryModelKeepsWhatThePanelSays) {
  std::uint64_t seed = 0;
  for (const auto* model : support::everyModel())
    EXPECT_EQ(runOne(std::string(model->name), ++seed), "") << model->name << " (seed " << seed << ")";
}

// A chip that was used before: each byte that the panel settles is brought back, whichever one it is that differs.
TEST(OptionSweep, AUsedChipLosesWhatItHeldBefore) {
  struct Used {
    const char* name;
    int firmware = 0;
    std::vector<std::size_t> bytes;
  };
  for (const auto& [name, firmware, bytes] : std::vector<Used>{{"Cedar-H20R", 0, {1}},
                                                               {"Elm-H08", 0, {0, 1, 2, 3, 8, 9}},
                                                               {"Elm-H08", 0x53, {2, 3, 8, 10, 11}},
                                                               {"Hazel-H04", 0x57, {0, 2, 3, 8, 10}},
                                                               {"Ivy-H20S", 0, {0, 1, 2, 3, 8, 9}},
                                                               {"Larch-H20Y", 0, {0, 1, 2, 3, 8, 9}},
                                                               {"Rowan-H20", 0, {0, 3, 4, 8, 10, 11}}})
    for (const std::size_t i : bytes) {
      SCOPED_TRACE(std::string(name) + " byte " + std::to_string(i));
      EngineBench bench;
      bench.select(name);
      auto config = sim::configFor(*catalogue::findByName(name));
      config.firmware = firmware;
      bench.options.composeOptions();
      const auto wanted = bench.wanted();
      std::copy_n(wanted.begin(), 16, config.options.emplace().begin());
      (*config.options)[i] ^= 0x20;  // the one byte that differs
      const auto& chip = bench.insertChip(config);
      bench.loadCode(1, 600);
      EXPECT_TRUE(bench.program() && bench.passed()) << bench.text();
      EXPECT_EQ(chip.options()[i], wanted[i]);
      EXPECT_EQ(chip.violationText(), "");
    }
}

}  // namespace
}  // namespace kvr
