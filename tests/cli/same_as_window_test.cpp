// The command and the window, each with the same job and the same chip: the same bytes on the wire, the same chip.
#include <gtest/gtest.h>

#include <map>
#include <random>

#include "tests/cli/cli_bench.h"
#include "tests/support/engine_bench.h"
#include "tests/support/form_bench.h"
#include "tests/support/models.h"

namespace kvr::cli {
namespace {

using support::FormBench;

constexpr std::size_t kOfEachFamily = 4;
constexpr const char* kProject = "/product.KVR";

std::vector<std::string> someModels() {
  std::map<catalogue::Family, std::vector<std::string>> byFamily;
  for (const auto* model : support::everyModel()) byFamily[model->family].emplace_back(model->name);
  std::vector<std::string> models;
  for (const auto& [family, names] : byFamily)
    for (std::size_t i = 0; i < std::min(kOfEachFamily, names.size()); ++i)
      models.push_back(names[i * names.size() / std::min(kOfEachFamily, names.size())]);
  return models;
}

void chooseOptions(FormBench& bench, std::uint64_t seed) {
  std::mt19937_64 random(seed);
  for (const auto& group : bench.form.optionsRoom.groups())
    for (auto* button : group.buttons)
      if (button->enabled() && button->visible() && random() % 2 == 0) button->userChoose();
}

struct Job {
  std::string model;
  std::uint64_t seed;
  bool byProject;
  platform::Bytes code, data;
};

Job jobFor(const std::string& model, std::uint64_t seed) {
  const catalogue::McuRecord& row = *catalogue::findByName(model);
  Job job{model, seed, seed % 2 == 0, support::randomBytes(seed, 600 + seed * 97 % 3000), {}};
  if (catalogue::hasDataFile(row) && catalogue::dataFileIsProgrammed(row))
    job.data = support::randomBytes(seed + 1, 300);
  return job;
}

void window(FormBench& bench, const Job& job) {
  bench.select(job.model);
  bench.form.options.com_RC_frequency[5].setText("11.0592");
  bench.loadCode(job.code);
  if (!job.data.empty()) bench.loadData(job.data);
  if (job.byProject) {
    chooseOptions(bench, job.seed);
    bench.dialogs.paths.push_back(kProject);
    bench.press(bench.form.project.panel.comSaveBatchFile);
    bench.dialogs.paths.push_back(kProject);
    bench.press(bench.form.project.panel.comOpenBatchFile[0]);
  }
  bench.insertChip(job.seed);
  bench.press(bench.form.download.comDownload[0]);
}

int command(CliBench& bench, const Job& job, const platform::Bytes& project) {
  bench.files.put("/image.bin", job.code);
  bench.files.put("/data.bin", job.data);
  bench.files.put(kProject, project);
  std::string line = "program --yes --frequency 11.0592 ";
  line += job.byProject ? "--project " + std::string(kProject) : "--model " + job.model + " /image.bin";
  if (!job.byProject && !job.data.empty()) line += " --data /data.bin";
  bench.insertModel(job.model, job.seed);
  return bench.run(wordsOf(line));
}

std::string hostBytes(const sim::Wire& wire) {
  std::string text;
  for (const sim::Unit& unit : wire.log())
    if (unit.direction == sim::Direction::hostToDevice) text.append(unit.bytes.begin(), unit.bytes.end()).append("|");
  return text;
}

TEST(SameAsWindow, ForModelsOfEveryFamilyTheWireAndTheChipAreTheSame) {
  const auto models = someModels();
  EXPECT_GE(models.size(), 60u);
  std::uint64_t seed = 1;
  for (const std::string& model : models) {
    const Job job = jobFor(model, seed++);
    SCOPED_TRACE(model + (job.byProject ? ", from a project" : ", from files"));
    FormBench form;
    window(form, job);
    const bool inPart = form.form.download.verdict.value() == download::VerdictKind::PassInPart;
    EXPECT_TRUE(form.passed() || inPart) << form.pane();
    CliBench cli;
    EXPECT_EQ(command(cli, job, form.files.files[kProject].bytes), inPart ? 8 : 0) << cli.streams.told;
    EXPECT_TRUE(hostBytes(cli.wire) == hostBytes(form.wire));
    EXPECT_TRUE(std::ranges::equal(cli.chip->flash(), form.chip->flash()));
    EXPECT_EQ(cli.chip->options(), form.chip->options());
    EXPECT_EQ(cli.chip->violationText(), "");
  }
}

}  // namespace
}  // namespace kvr::cli
