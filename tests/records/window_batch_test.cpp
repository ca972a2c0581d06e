// A batch that is chosen in the window, in the virtual world, with a real record store.
#include <gtest/gtest.h>

#include "tests/cli/cli_bench.h"
#include "tests/records/test_desk.h"
#include "tests/support/engine_bench.h"
#include "tests/support/form_bench.h"

namespace kvr {
namespace {

using records::Places;
using support::FormBench;

class WindowBatch : public testing::Test {
 protected:
  WindowBatch() {
    bench.select("Ivy-H20S");
    bench.loadCode(image);
    line.files.put("/image.bin", image);
    line.books = &desk;
    EXPECT_EQ(line.run(cli::wordsOf("batch new B7 --model Ivy-H20S /image.bin --serial-at 7FF --serial-next 258 "
                                    "--wanted 3 --serial-step 2")),
              0)
        << line.streams.told;
    bench.form.batches.panel.txtBatch.userType(" B7 ");
    bench.form.download.comDalay_ReDownLoad.setText("1");
    bench.form.download.verdict.changed.connect([this] {
      if (!bench.passed()) return;
      numbers.push_back(numberOnChip());
      bench.loop.after(platform::Millis(300), [this] { bench.insertChip(++seed); });
    });
    bench.insertChip(seed);
  }
  int numberOnChip() const {
    const auto flash = bench.chip->flash();
    return flash[0x7FC] << 24 | flash[0x7FD] << 16 | flash[0x7FE] << 8 | flash[0x7FF];
  }
  bool program() { return bench.press(bench.form.download.comDownload[0]) && bench.passed(); }
  // Program is refused, in a box, before the port opens.
  void refused(const std::string& why) {
    bench.dialogs.shown.clear();
    const int opens = bench.link.opens;
    EXPECT_FALSE(program());
    EXPECT_EQ(bench.link.opens, opens);
    ASSERT_EQ(bench.dialogs.shown.size(), 1U) << why;
    EXPECT_NE(bench.dialogs.shown[0].text.find(why), std::string::npos) << bench.dialogs.shown[0].text;
  }
  records::Batch batch() {
    auto store = desk.open(desk.place);
    return store.value->batch("B7").value;
  }

  QTemporaryDir folder;
  records::TestDesk desk{folder};
  cli::CliBench line;
  FormBench bench{{}, &desk};
  platform::Bytes image = support::randomBytes(7, 2048);
  std::uint64_t seed = 1;
  std::vector<int> numbers;
};

TEST_F(WindowBatch, GivesTheNumbersAndARepeatEndsWhenItIsFull) {
  EXPECT_TRUE(bench.press(bench.form.download.comDownload[1]));
  EXPECT_EQ(numbers, (std::vector{258, 260, 262}));
  EXPECT_EQ(batch().places, (Places{.given = 3, .spent = 3}));
  EXPECT_EQ(bench.form.batches.panel.labBatch.caption(), "Batch B7: 3 of 3 done, full. Last number: 262.");
  refused("The batch \"B7\" is full: 3 of 3 done.");
}

// The window has counted before, and its number lies in the image; the batch's goes over it.
TEST_F(WindowBatch, AWindowThatCountsWhereTheBatchDoesTakesTheBatchsNumbers) {
  auto& panel = bench.form.images.panel;
  for (const auto& [box, text] : {std::pair{0, "7FF"}, {1, "4"}, {2, "95"}, {3, "1"}})
    panel.texAuto_Increase[static_cast<std::size_t>(box)].userType(text);
  panel.optAuto_Increase[0].userChoose();
  panel.cheAuto_Increase.userSet(true);
  EXPECT_TRUE(program());
  EXPECT_EQ(panel.texAuto_Increase[2].text(), "95");
  panel.cheAuto_Increase.userSet(false);
  EXPECT_TRUE(program());
  EXPECT_EQ(numbers, (std::vector{258, 260}));
  panel.texAuto_Increase[0].userType("6FF");
  panel.cheAuto_Increase.userSet(true);
  refused("This is not the job of the batch \"B7\": place of the serial number");
}

TEST_F(WindowBatch, NoChipPassesWithAnotherJobOrWithoutItsBatchOrItsStore) {
  bench.form.batches.panel.txtBatch.userType("B8");
  refused("There is no batch \"B8\"");
  bench.form.batches.panel.txtBatch.userType("B7");
  desk.place = "/proc/none/records.db";
  refused("The record store's folder /proc/none cannot be made.");
  desk.place = folder.filePath("records.db").toStdString();
  image[5] ^= 1;
  bench.loadCode(image);
  refused("This is not the job of the batch \"B7\": code checksum");
  EXPECT_EQ(batch().places, (Places{}));
  bench.form.batches.panel.txtBatch.userType("");
  EXPECT_TRUE(program());
}

}  // namespace
}  // namespace kvr
