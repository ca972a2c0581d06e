#include "images/hex_view_model.h"
#include "images/copy_text.h"
#include "images/edit_history.h"

#include <gtest/gtest.h>

#include <numeric>

#include "tests/images/images_bench.h"

namespace kvr::images {
namespace {

using platform::Bytes;
using platform::Millis;

struct ModelTest : ::testing::Test {
  ModelTest() {
    Bytes bytes(1000);
    std::iota(bytes.begin(), bytes.end(), std::uint8_t{0});
    buffer.fill(0);
    buffer.put(0, bytes);
    range(0, 999);
    model.show(buffer);
    model.setPageLines(10);
  }
  void range(std::int32_t first, std::int32_t last) {
    buffer.bounds() = {.fileStart = first, .fileEnd = last, .rangeStart = first, .rangeEnd = last};
    model.keepInRange();
  }
  HexSpot at(std::int32_t address, bool low = false) { return {address, low}; }
  ImageBuffer buffer{ImageKind::Code, kCodeBufferSize};
  HexViewModel model;
};

TEST_F(ModelTest, LinesHaveTheirFormat) {
  range(0x13, 0x25);
  model.setPageLines(62);
  EXPECT_EQ(model.pageText(),
            "\n\n 000010   10 11 12 13 14 15 16 17 18 19 1A 1B 1C 1D 1E 1F \n 000020   20 21 22 23 24 25 \n");
  EXPECT_EQ(model.lineCount(), 2);
  range(kNoRangeStart, 0);
  EXPECT_EQ(model.pageText(), "\n\n 000000   00 \n");
  EXPECT_EQ(HexViewModel().pageText(), "\n\n");
}

TEST_F(ModelTest, KeysMoveTheCaretAndKeepItInView) {
  using enum HexKey;
  const std::tuple<HexKey, HexSpot, std::int32_t> steps[] = {
      // the caret and the first line after the key
      {Right, at(0, true), 0},       {Right, at(1), 0},        {Left, at(0, true), 0}, {Up, at(0, true), 0},
      {PageDown, at(160, true), 10}, {PageUp, at(0, true), 0}, {Last, at(999), 53},    {Down, at(999), 53},
      {PageDown, at(999), 59},       {LineStart, at(992), 59}, {LineEnd, at(999), 59},  // the last line is short
  };
  for (const auto& [key, caret, topLine] : steps) {
    model.move(key, false);
    EXPECT_EQ(std::tuple(key, model.caret(), model.topLine()), std::tuple(key, caret, topLine));
  }
  model.move(First, true);
  EXPECT_EQ(model.selection(), (catalogue::AddressRange{0, 999}));
  EXPECT_EQ(model.topLine(), 0);
  model.scrollTo(1000);
  EXPECT_EQ(model.topLine(), 59) << "the last lines may stand at the top";
  range(0x100, 0x110);
  EXPECT_EQ(model.topLine(), 0);
  EXPECT_EQ(model.caret(), at(0x100));
}

TEST_F(ModelTest, FindsBothWaysAndAroundTheEnd) {
  model.click(at(0x20), false);
  for (const int found : {0x110, 0x210, 0x310, 0x10}) {
    EXPECT_TRUE(model.find({0x10, 0x11, 0x12}, true));
    EXPECT_EQ(model.selection(), (catalogue::AddressRange{found, found + 2}));
  }
  EXPECT_TRUE(model.find({0x10, 0x11, 0x12}, false));
  EXPECT_EQ(model.caret().address, 0x310);
  for (const Bytes& absent : {Bytes{0x10, 0x12}, Bytes{}, Bytes(1001, 0)}) EXPECT_FALSE(model.find(absent, true));
  EXPECT_EQ(model.caret().address, 0x310);
  for (const bool forward : {true, false}) {
    model.click(at(999), false);
    EXPECT_TRUE(model.find({0xE5, 0xE6, 0xE7}, forward));
    EXPECT_EQ(model.caret().address, forward ? 0xE5 : 997) << "the nearest in its direction";
  }
}

TEST_F(ModelTest, CellsTellWhereTheirBytesComeFrom) {
  buffer.edit(5, Bytes{0xEE});
  range(0, 1010);
  model.setField({6, 7});
  const auto first = model.line(0).cells;
  EXPECT_TRUE(first[5].changed && first[5].fromFile && !first[4].changed);
  EXPECT_TRUE(first[6].inField && first[7].inField && !first[8].inField);
  const auto last = model.line(62).cells;
  EXPECT_TRUE(last[7].fromFile && !last[8].fromFile) << "address 1000 was written by no file";
  buffer.lay({Bytes(kCodeBufferSize), Bytes(kCodeBufferSize)});
  EXPECT_FALSE(model.line(0).cells[5].changed) << "a load forgets the colours";
}

TEST_F(ModelTest, ChangedIsWhatDiffersFromTheLoadAndAGapWhatNobodyWrote) {
  buffer.edit(5, Bytes{0xEE});
  buffer.edit(5, Bytes{5});
  EXPECT_FALSE(buffer.changedSinceLoad(5)) << "put back by hand";
  EXPECT_TRUE(buffer.gap(1000) && !buffer.gap(999));
  buffer.edit(1000, Bytes{7});
  EXPECT_TRUE(buffer.changedSinceLoad(1000) && !buffer.gap(1000));
  buffer.lay({Bytes(kCodeBufferSize), Bytes(kCodeBufferSize)});  // merged with a file that has nothing here
  EXPECT_TRUE(!buffer.changedSinceLoad(1000) && !buffer.gap(1000) && buffer.at(1000) == 7);
  buffer.blank(990, 1000);
  EXPECT_TRUE(buffer.gap(990) && !buffer.gap(989));
}

TEST_F(ModelTest, UndoGoesByBytesStopsAtALoadAndPassesOverWhatOthersWrote) {
  EditHistory history;
  history.edit(buffer, 5, 0xA5, false);
  history.edit(buffer, 5, 0xAB, true);
  history.edit(buffer, 6, 0x16, false);
  buffer.edit(6, Bytes{0x77});  // a serial number
  EXPECT_EQ(history.step(buffer, false), 5);
  EXPECT_EQ(buffer.at(5), 5) << "both digits at once";
  EXPECT_EQ(buffer.at(6), 0x77);
  EXPECT_EQ(history.step(buffer, false), std::nullopt);
  EXPECT_EQ(history.step(buffer, true), 5);
  EXPECT_EQ(buffer.at(5), 0xAB);
  history.step(buffer, false);
  history.edit(buffer, 7, 0x07, false);  // no change at all
  EXPECT_TRUE(history.offers(buffer, true)) << "typing what is there already undoes nothing";
  history.edit(buffer, 7, 0x17, false);
  EXPECT_FALSE(history.offers(buffer, true));
  buffer.put(100, Bytes{1});
  EXPECT_FALSE(history.offers(buffer, false)) << "another file is there";
  for (std::size_t i = 0; i < EditHistory::kMostSteps + 5; ++i)
    history.edit(buffer, 0, static_cast<std::uint8_t>(i), false);
  std::size_t undone = 0;
  while (history.step(buffer, false)) ++undone;
  EXPECT_EQ(undone, EditHistory::kMostSteps);
}

TEST_F(ModelTest, DifferencesAreFoundBothWaysWithGapsAndFollowTheEdits) {
  FileLayer other = buffer.held();
  for (const std::size_t at : {16, 17, 200}) other.bytes[at] ^= 1;
  other.written[300] = 0;
  other.written[2000] = 1;  // beyond what is shown
  model.compareWith("b.hex", other);
  for (const auto& [forward, first, last] : {std::tuple(true, 16, 17),
                                             {true, 200, 200},
                                             {true, 300, 300},
                                             {true, 16, 17},
                                             {false, 300, 300},
                                             {false, 200, 200}}) {
    EXPECT_TRUE(model.toDifference(forward));
    EXPECT_EQ(model.selection(), (catalogue::AddressRange{first, last}));
  }
  EXPECT_TRUE(model.line(1).cells[1].differs && !model.line(1).cells[2].differs);
  EXPECT_EQ(model.comparison().text(16), "b.hex: 3 differences; 11 at 000010; 1 bytes of it lie outside this image");
  buffer.edit(200, Bytes{static_cast<std::uint8_t>(buffer.at(200) ^ 1)});
  model.compareAnew();
  EXPECT_EQ(model.comparison().text(300),
            "b.hex: 2 differences; no byte at 00012C; 1 bytes of it lie outside this image");
}

struct ViewTest : ::testing::Test {
  ViewTest() {
    Bytes bytes(4000);
    std::iota(bytes.begin(), bytes.end(), std::uint8_t{0});
    bench.openCode("/a.bin", bytes);
    bench.dialogs.shown.clear();
    pane.model.click({0x10, false}, false);
  }
  ImagesBench bench{"Ivy-HF0S"};
  HexPane& pane = bench.room.panel.txtBuffer2;
  ImageBuffer& code = bench.room.state.CodeBuffer;
};

TEST_F(ViewTest, AsksOnceAndAgainTwentySecondsAfterTheLastDigit) {
  bench.dialogs.yesNo = {false, true, true};
  pane.userType(U'A');
  EXPECT_EQ(code.at(0x10), 0x10) << "No changes nothing";
  pane.userType(U'A');
  pane.userType(U'b');
  EXPECT_EQ(code.at(0x10), 0xAB);
  EXPECT_EQ(pane.model.caret(), (HexSpot{0x11, false}));
  bench.loop.runFor(Millis{19000});
  pane.userType(U'0');
  bench.loop.runFor(Millis{19000});
  pane.userType(U'0');
  EXPECT_EQ(bench.boxes(), (std::vector<std::string>{"Update the buffer ?", "Update the buffer ?"}));
  bench.loop.runFor(Millis{20001});
  pane.userType(U'0');
  EXPECT_EQ(bench.boxes().size(), 3U);
  pane.userType(U'x');
  bench.loop.runFor(Millis{20001});
  const auto running = bench.activity.begin();
  pane.userType(U'0');
  EXPECT_EQ(bench.boxes().size(), 3U) << "neither what is no digit nor a digit under another dialog asks anything";
}

TEST_F(ViewTest, ASecondFileIsReadAsTheFirstAndTheImageStaysAsItIs) {
  Bytes bytes(4000);
  std::iota(bytes.begin(), bytes.end(), std::uint8_t{0});
  bytes[0x20] = 0xEE;
  bench.files.put("/b.bin", bytes);
  for (const char* path : {"/none.bin", "/b.bin"}) {
    bench.dialogs.paths.push_back(path);
    pane.userCompare();
  }
  EXPECT_EQ(bench.boxes(), std::vector<std::string>{"The file cannot be read: /none.bin"});
  EXPECT_EQ(pane.model.comparison().text(0x20), "b.bin: 1 difference; EE at 000020");
  EXPECT_EQ(code.at(0x20), 0x20);
  EXPECT_EQ(bench.room.loader.source().path, "/a.bin");
  bench.openCode("/b.bin", bytes);
  EXPECT_EQ(pane.model.comparison().text(0), "b.bin: no differences") << "it goes on after a load";
  bench.room.loader.clearBuffers();
  EXPECT_FALSE(pane.model.comparison().on() || pane.model.toDifference(true));
}

TEST_F(ViewTest, NothingIsChangedInARunOrWithoutAnImage) {
  bench.dialogs.yesNo = {true, true, true};
  pane.userType(U'A');
  pane.userUndo(false);
  EXPECT_EQ(code.at(0x10), 0x10);
  pane.userUndo(true);
  bench.lock.set(platform::UiLock::kBusy);
  pane.userType(U'B');
  pane.userUndo(false);
  EXPECT_EQ(code.at(0x10), 0xA0);
  pane.userKey(HexKey::Down);
  EXPECT_EQ(pane.model.caret().address, 0x20) << "looking is allowed";
  bench.loop.runFor(Millis{20001});
  bench.lock.set(platform::UiLock::kFree);
  bench.room.loader.clearBuffers();
  pane.userType(U'5');
  EXPECT_EQ(bench.boxes().back(), " Please open code file.");
  EXPECT_EQ(code.at(0), 0);
}

TEST(CopyText, GivesCArraysThatCompileAndTextWithoutControlCharacters) {
  const std::vector<std::uint8_t> bytes = {1, 'A', '\n', 0xFF};
  EXPECT_EQ(copyText(bytes, CopyForm::CArray), "const unsigned char data[4] = {\n  0x01, 0x41, 0x0A, 0xFF};\n");
  EXPECT_EQ(copyText(bytes, CopyForm::Text), ".A\n.");
  const std::string two = copyText(std::vector<std::uint8_t>(13, 7), CopyForm::CArray);
  EXPECT_NE(two.find("0x07,\n  0x07};"), std::string::npos) << two;
}

}  // namespace
}  // namespace kvr::images
