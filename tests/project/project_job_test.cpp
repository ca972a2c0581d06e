// A project file is a job written down.
#include <gtest/gtest.h>

#include <random>

#include "project/project_job.h"
#include "tests/project/project_bench.h"
#include "tests/support/models.h"

namespace kvr::project {
namespace {

std::vector<const catalogue::McuRecord*> models() {
  return support::oneOfEach([](const auto& row) { return row.noOptions ? "" : traitsOf(row).name; });
}

ProjectFile savedBy(ProjectBench& bench) {
  bench.save("/p.KVR");
  const ReadProject read = readProject(bench.files.files.at("/p.KVR").bytes, bench.codec);
  EXPECT_EQ(read.refusal, "");
  return read.project;
}

TEST(ProjectJob, OfASavedWindowIsTheJobThatTheWindowWouldStart) {
  EXPECT_GE(models().size(), 16u);
  for (const auto* row : models())
    for (std::uint32_t seed = 1; seed <= 8; ++seed) {
      std::mt19937 random(seed);
      ProjectBench bench;
      ASSERT_TRUE(bench.select(std::string(row->name)));
      bench.fill(random, 700);
      bench.optionPanel.txt_RC_frequency.setText("128");  // no project keeps the trim by hand
      bench.chooseAtRandom(random);
      const engine::Job job = jobOf(savedBy(bench));
      EXPECT_EQ(job.model.name(), row->name);
      EXPECT_EQ(engine::optionBytesOf(job), options::composeOptions(bench.options.readPanel(), {}).bytes) << row->name;
      EXPECT_EQ(job.doubleSpeed, bench.options.chosen("Double_speed_YES")) << row->name;
      EXPECT_EQ(job.baseFrequencyHz, bench.options.baseFrequencyHz()) << row->name;
      const auto& code = bench.images.state.CodeBuffer;
      EXPECT_EQ(job.code.rangeEnd, code.rangeEnd);
      EXPECT_TRUE(std::equal(job.code.bytes.begin(), job.code.bytes.end(), code.bytes().begin()));
      EXPECT_EQ(job.data.loaded, bench.images.state.EepromBuffer.loaded);
    }
}

TEST(ProjectJob, FreshOptionsAreThoseThatTheWindowSavesOfAFreshModel) {
  for (const auto* row : models()) {
    ProjectBench bench;
    ASSERT_TRUE(bench.select(std::string(row->name)));
    std::mt19937 random(1);
    bench.fill(random, 600);
    const Header saved = savedBy(bench).options;
    Header fresh = freshOptions(*row);
    std::erase_if(fresh, [&](const HeaderLine& line) { return !options::findRow(traitsOf(*row).panelSlot, line.key); });
    const auto textOf = [](const Header& header) {
      std::string text;
      for (const HeaderLine& line : header) text += line.key + "=" + line.value + "\n";
      return text;
    };
    EXPECT_EQ(textOf(fresh), textOf(saved)) << row->name;
  }
}

}  // namespace
}  // namespace kvr::project
