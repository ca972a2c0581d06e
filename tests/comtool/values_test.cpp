#include <gtest/gtest.h>

#include <random>
#include <string>

#include "comtool/text_cells.h"
#include "tests/comtool/tool_bench.h"

namespace kvr::comtool {
namespace {

TEST(PaneText, AnyPairOfCrAndLfEndsOneLineEvenCutByTwoReads) {
  PaneText text;
  for (const char* piece : {"a\r", "\nb\n", "\rc\r", "d\n", "\ne"}) text.append(piece);
  EXPECT_EQ(rowsOf(text), (std::vector<std::string>{"a", "b", "c", "d", "", "e"}));
  EXPECT_EQ(text.all(), "a\r\nb\n\rc\rd\n\ne");
}

TEST(PaneText, LongLinesWrapByColumnsAndAnewWhenTheWidthChanges) {
  PaneText text;
  text.setWidth(10);
  text.append("0123456789ab\xE6\xB8\xA9\xE6\xB8\xA9\xE6\xB8\xA9\xE6\xB8\xA9\xE6\xB8\xA9\n\txy");
  EXPECT_EQ(rowsOf(text), (std::vector<std::string>{"0123456789", "ab\xE6\xB8\xA9\xE6\xB8\xA9\xE6\xB8\xA9\xE6\xB8\xA9",
                                                    "\xE6\xB8\xA9", "\txy"}));
  const std::string before = text.all();
  const auto end = text.end();
  text.setWidth(40);
  EXPECT_EQ(text.rowCount(), 2U);
  EXPECT_EQ(text.all(), before);
  EXPECT_EQ(text.end(), end);
}

TEST(PaneText, AnEndlessLineAndEndlessMarksMakeBoundedRows) {
  PaneText text;
  text.setWidth(100);
  text.append(std::string(100000, 'x'));
  std::string marks;
  for (int i = 0; i < 20000; ++i) marks += "\xCC\x81";
  text.append(marks);
  EXPECT_EQ(text.chars(), 120000U);
  for (std::size_t i = 0; i < text.rowCount(); ++i) {
    ASSERT_LE(text.row(i).columns, 100);
    ASSERT_LE(text.row(i).text.size(), 4100U);
  }
}

TEST(PaneText, RandomTrafficKeepsRowsPositionsAndTextTogether) {
  std::mt19937 random(5);
  const std::vector<std::string> pieces{"a",   "\r", "\n", "\t", "\xC3\xA9", "\xE6\xB8\xA9", std::string(1, '\0'),
                                        "xyz "};
  PaneText text;
  std::string expected;
  for (int turn = 0; turn < 3000; ++turn) {
    const std::string& piece = pieces[random() % pieces.size()];
    text.append(piece);
    expected += piece;
    if (random() % 50 == 0) text.setWidth(static_cast<int>(random() % 40));
    if (random() % 200 == 0) {
      text.keepNewest(100);
      expected = expected.substr(expected.size() - (text.end() - text.begin()));
    }
    ASSERT_EQ(text.end() - text.begin(), expected.size());
  }
  EXPECT_EQ(text.all(), expected);
  EXPECT_EQ(text.chars(), countChars(expected));
  PaneText anew;
  anew.setWidth(text.width());
  anew.append(expected);
  EXPECT_EQ(rowsOf(text), rowsOf(anew));
}

}  // namespace
}  // namespace kvr::comtool
