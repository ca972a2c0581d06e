// Every model with options chosen at random on its panel: what the chip then holds, what the report says of it, and
// that a second run of the same chip sends no option frame where the chip has nothing to learn.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>

#include "../support/engine_bench.h"

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
  return family == 0 || (family >= 15 && family <= 17);
}

// Families 3 and up skip the frame only for chips that run from an external clock.
bool mayLeaveOut(const EngineBench& bench) {
  const int family = bench.model.record.family;
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
    return "first run failed: " + (bench.records.empty() ? bench.text() : bench.records.back().failure);
  const auto wanted = bench.options.set().wanted;
  const auto& record = bench.model.record;
  if (record.noOptions || record.topBlockFree || record.family == 1) return chip.violationText();
  for (const std::size_t i : keptBytes(record.family))
    if (chip.options()[i] != wanted[i])
      faults += "byte " + std::to_string(i) + " is " + std::to_string(chip.options()[i]) + ", wanted " +
                std::to_string(wanted[i]) + "; ";
  const int writes = chip.optionWrites();
  if (writes == 0 && !mayLeaveOut(bench)) faults += "no option frame; ";
  chip.powerOff(bench.loop.now().count());
  chip.powerOn((bench.loop.now() + support::Millis(200)).count());
  if (!bench.program() || !bench.passed()) return faults + "second run failed: " + bench.records.back().failure;
  // Rowan's first status frame does not carry all that its options are compared by, so its frame goes out every time.
  const bool wrote = chip.optionWrites() > writes;
  if (record.family != 18 && wrote == mayLeaveOut(bench))
    faults += wrote ? "a second option frame; " : "the clock was not sent again; ";
  return faults + chip.violationText();
}

TEST(OptionSweep, EveryModelKeepsWhatThePanelSays) {
  std::set<std::string_view> seen;
  std::uint64_t seed = 1;
  int failed = 0;
  for (const auto& row : catalogue::allRows()) {
    if (!seen.insert(row.name).second || failed > 60) continue;
    const std::string faults = runOne(std::string(row.name), seed++);
    if (faults.empty()) continue;
    ADD_FAILURE() << row.name << " (seed " << seed - 1 << "): " << faults;
    ++failed;
  }
  EXPECT_EQ(seen.size(), 780u);
}

}  // namespace
}  // namespace kvr
