// A production line: chip after chip in repeat mode, each with a number of its own, some of them bad.
#include <gtest/gtest.h>

#include <random>
#include <sstream>

#include "engine/batch_log.h"
#include "platform/text.h"
#include "tests/support/engine_bench.h"
#include "tests/support/form_bench.h"

namespace kvr {
namespace {

using download::VerdictKind;
using support::FormBench;

struct Batch {
  const char* name;
  std::size_t radix;  // 0 HEX, 1 BCD, 2 ASCII
  int bytes;
  int step;
  int chips;
};

// The number as the chip's program reads it.
std::int64_t numberIn(std::span<const std::uint8_t> field, std::size_t radix) {
  std::int64_t number = 0;
  for (const std::uint8_t byte : field) {
    if (radix == 0) number = number * 256 + byte;
    if (radix == 1) number = number * 100 + (byte >> 4) * 10 + (byte & 15);
    if (radix == 2) number = number * 10 + (byte ? byte - '0' : 0);
  }
  return number;
}

class Line {
 public:
  explicit Line(const Batch& batch) : batch_(batch), random_(batch.radix + 7) {
    bench.select("Ivy-H20S");
    bench.loadCode(support::randomBytes(3, 2048));
    auto& panel = bench.form.images.panel;
    panel.texAuto_Increase[0].userType("103");
    panel.texAuto_Increase[1].userType(std::to_string(batch.bytes));
    panel.texAuto_Increase[2].userType("95");
    panel.texAuto_Increase[3].userType(std::to_string(batch.step));
    panel.optAuto_Increase[batch.radix].userChoose();
    panel.cheAuto_Increase.userSet(true);
    bench.form.download.comDalay_ReDownLoad.setText("1");
    bench.form.main.cheBatchLog.userSet(true);
    bench.form.download.verdict.changed.connect([this] { verdict(); });
  }

  void run() {
    while (passed < batch_.chips) {
      nextChip();
      ASSERT_TRUE(bench.press(bench.form.download.comDownload[1]));  // repeats until a chip fails
      ASSERT_LE(passed + failed, 3 * batch_.chips);
    }
  }

  std::vector<std::string> log() {
    const auto& bytes = bench.files.files[bench.form.main.txtBatchLog.text()].bytes;
    std::vector<std::string> lines;
    std::istringstream text(std::string(bytes.begin(), bytes.end()));
    for (std::string line; std::getline(text, line);) lines.push_back(line);
    return lines;
  }

  FormBench bench;
  std::vector<std::int64_t> numbers;  // of the good chips, in their order
  int passed = 0;
  int failed = 0;

 private:
  void verdict() {
    const auto kind = bench.form.download.verdict.value();
    if (kind == VerdictKind::Fail) ++failed;
    if (kind == VerdictKind::Pass) ++passed;
    if (kind != VerdictKind::Pass && kind != VerdictKind::Fail) return;
    const std::string told = log().back();  // written before anybody reads the verdict
    EXPECT_NE(told.find(kind == VerdictKind::Pass ? ",PASS,," : ",FAIL,"), std::string::npos) << told;
    EXPECT_EQ(log().size(), static_cast<std::size_t>(1 + passed + failed));
    if (kind != VerdictKind::Pass) return;
    std::istringstream fields(told);
    std::string serial;
    for (int i = 0; i < 8; ++i) std::getline(fields, serial, ',');
    EXPECT_EQ(platform::wholeOf(serial), 95 + (passed - 1) * batch_.step) << told;
    const auto last = static_cast<std::size_t>(0x103);
    const auto count = static_cast<std::size_t>(batch_.bytes);
    numbers.push_back(numberIn(bench.chip->flash().subspan(last + 1 - count, count), batch_.radix));
    EXPECT_EQ(bench.chip->violationText(), "");
    if (passed >= batch_.chips)
      bench.loop.after(platform::Millis(300), [this] { bench.form.download.comStop_Download.press(); });
    else
      bench.loop.after(platform::Millis(300), [this] { nextChip(); });
  }

  void nextChip() {
    auto config = sim::configFor(*catalogue::findByName("Ivy-H20S"), 11059200, random_());
    if (random_() % 9 == 0) config.faults.diesAfterBlocks = 1;
    if (random_() % 11 == 0) config.faults.optionsDoNotStick = true;
    bench.insertChip(config);
  }

  Batch batch_;
  std::mt19937_64 random_;
};

TEST(Batch, GivesAThousandChipsTheirNumbersNoneTwiceNoneMissing) {
  for (const Batch& batch : {Batch{"HEX", 0, 3, 7, 400}, Batch{"BCD", 1, 4, 1, 300}, Batch{"ASCII", 2, 8, 3, 300}}) {
    SCOPED_TRACE(batch.name);
    Line line(batch);
    line.run();
    ASSERT_EQ(line.numbers.size(), static_cast<std::size_t>(batch.chips));
    for (int i = 0; i < batch.chips; ++i)
      ASSERT_EQ(line.numbers[static_cast<std::size_t>(i)], 95 + static_cast<std::int64_t>(i) * batch.step)
          << "chip " << i;
    EXPECT_GT(line.failed, 20);
    EXPECT_EQ(platform::wholeOf(line.bench.form.download.txtWrite_OK_Count.text()), batch.chips);
    EXPECT_EQ(platform::wholeOf(*line.bench.store.get("Auto_Increase", "next_value")), 95 + batch.chips * batch.step);
  }
}

TEST(Batch, LogThatCannotBeWrittenIsSaidAndTheChipIsGoodAllTheSame) {
  FormBench bench;
  bench.select("Ivy-H20S");
  bench.loadCode(support::randomBytes(3, 2048));
  bench.form.main.cheBatchLog.userSet(true);
  EXPECT_EQ(bench.form.main.txtBatchLog.text(), "/program/KVR-ISP_batch.csv");
  bench.form.main.txtBatchLog.setText("");  // a log without a name gets it again
  bench.files.diskFull = true;
  bench.insertChip();
  ASSERT_TRUE(bench.press(bench.form.download.comDownload[0]));
  EXPECT_TRUE(bench.passed());
  EXPECT_NE(bench.pane().find("The batch log could not be written: "), std::string::npos) << bench.pane();
  EXPECT_EQ(bench.form.main.txtBatchLog.text(), "/program/KVR-ISP_batch.csv");
  EXPECT_TRUE(bench.form.main.labNotice.caption().starts_with("The batch log could not be written: "));
  EXPECT_EQ(engine::csvLine({.time = "t", .model = "a,b", .failure = "say \"x\""}),
            "t,\"a,b\",,\"say \"\"x\"\"\",,,,,,0,\r\n");
}

TEST(BatchLog, TellsTheTurnRoundUnlessItBeganWithoutOne) {
  const auto logged = [](std::string begun) {
    platform::MemoryFiles files;
    EXPECT_TRUE(files.replace("/log.csv", platform::Bytes(begun.begin(), begun.end())));
    EXPECT_TRUE(engine::appendToBatchLog(files, "/log.csv", {.time = "t", .seconds = 5, .turnRoundMs = 10}));
    const auto& bytes = files.files["/log.csv"].bytes;
    return std::string(bytes.begin(), bytes.end()).substr(begun.size());
  };
  constexpr const char* kOlder = "time,model,verdict,failure,code sum,data sum,firmware,serial,factory id,seconds\r\n";
  EXPECT_EQ(logged(kOlder), "t,,,,,,,,,5\r\n");
  EXPECT_EQ(logged(""),
            std::string(kOlder).insert(std::string(kOlder).size() - 2, ",turn-round ms") + "t,,,,,,,,,5,10\r\n");
  EXPECT_EQ(logged("a log of another kind\r\n"), "t,,,,,,,,,5,10\r\n");
}

}  // namespace
}  // namespace kvr
