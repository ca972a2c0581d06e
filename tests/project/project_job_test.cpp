// A project file is a job written down.
#include <gtest/gtest.h>

#include <random>
#include <set>

#include "project/project_job.h"
#include "tests/project/project_bench.h"

namespace kvr::project {
namespace {

TEST(ProjectJob, OfASavedWindowIsTheJobThatTheWindowWouldStart) {
  std::set<catalogue::Family> seen;
  for (const auto& row : catalogue::allRows()) {
    if (row.name.empty() || row.noOptions || !seen.insert(row.family).second) continue;
    for (std::uint32_t seed = 1; seed <= 8; ++seed) {
      std::mt19937 random(seed);
      ProjectBench bench;
      ASSERT_TRUE(bench.select(std::string(row.name)));
      bench.fill(random, 700);
      bench.optionPanel.txt_RC_frequency.setText("128");  // no project keeps the trim by hand
      bench.chooseAtRandom(random);
      bench.dialogs.paths.push_back("/p.KVR");
      bench.room.panel.comSaveBatchFile.press();
      const auto file = bench.files.read("/p.KVR", 10'000'000);
      ASSERT_TRUE(file);
      const ReadProject read = readProject(*file, bench.codec);
      ASSERT_EQ(read.refusal, "");
      const engine::Job job = jobOf(read.project);
      EXPECT_EQ(job.model.name(), row.name);
      EXPECT_EQ(engine::optionBytesOf(job), options::composeOptions(bench.options.readPanel(), {}).bytes) << row.name;
      EXPECT_EQ(job.doubleSpeed, bench.options.chosen("Double_speed_YES")) << row.name;
      EXPECT_EQ(job.baseFrequencyHz, bench.options.baseFrequencyHz()) << row.name;
      const auto& code = bench.images.state.CodeBuffer;
      EXPECT_EQ(job.code.rangeEnd, code.rangeEnd);
      EXPECT_TRUE(std::equal(job.code.bytes.begin(), job.code.bytes.end(), code.bytes().begin()));
      EXPECT_EQ(job.data.loaded, bench.images.state.EepromBuffer.loaded);
    }
  }
  EXPECT_GE(seen.size(), 16u);
}

TEST(ProjectJob, FreshOptionsAreThoseThatTheWindowSavesOfAFreshModel) {
  std::set<catalogue::Family> families;
  for (const auto& row : catalogue::allRows()) {
    if (row.name.empty() || row.noOptions || !families.insert(row.family).second) continue;
    ProjectBench bench;
    ASSERT_TRUE(bench.select(std::string(row.name)));
    std::mt19937 random(1);
    bench.fill(random, 600);
    bench.dialogs.paths.push_back("/p.KVR");
    bench.room.panel.comSaveBatchFile.press();
    const auto file = bench.files.read("/p.KVR", 10'000'000);
    ASSERT_TRUE(file);
    const Header saved = readProject(*file, bench.codec).project.options;
    Header fresh = freshOptions(row);
    std::erase_if(fresh, [&](const HeaderLine& line) { return !options::findRow(traitsOf(row).panelSlot, line.key); });
    const auto textOf = [](const Header& header) {
      std::string text;
      for (const HeaderLine& line : header) text += line.key + "=" + line.value + "\n";
      return text;
    };
    EXPECT_EQ(textOf(fresh), textOf(saved)) << row.name;
  }
}

}  // namespace
}  // namespace kvr::project
