#include <gtest/gtest.h>

#include "comtool/escape_filter.h"
#include "comtool/key_bytes.h"
#include "comtool/paste_queue.h"
#include "comtool/rolling_log.h"
#include "tests/comtool/tool_bench.h"

namespace kvr::comtool {
namespace {

TEST(EscapeFilter, PassesOverSequencesWhereverTheyAreCut) {
  const std::string text =
      "\x1B[1;31mred\x1B[0m \x1B]0;title\x07 a\x1B]8;;x\x1B\\b\x1B(Bc\x1B"
      "7d\x1B[?25l\x1BPq#\x1B\\e\x1B\x1B[Kf\xC3\xA9";
  for (std::size_t first = 0; first <= text.size(); ++first)
    for (std::size_t second = first; second <= text.size(); second += 7) {
      EscapeFilter filter;
      std::string shown = filter.pass(text.substr(0, first));
      shown += filter.pass(text.substr(first, second - first));
      shown += filter.pass(text.substr(second));
      ASSERT_EQ(shown, "red  abcdef\xC3\xA9") << first << " " << second;
    }
}

TEST(Keys, HaveTheBytesOfATerminal) {
  EXPECT_EQ(bytesOf(Key::Left), "\x1B[D");
  EXPECT_EQ(bytesOf(Key::Delete), "\x1B[3~");
  EXPECT_EQ(controlCharacter(U'c'), 3);
  EXPECT_EQ(controlCharacter(U'Z'), 26);
  EXPECT_EQ(controlCharacter(U'['), 27);
  EXPECT_EQ(controlCharacter(U' '), 0);
  EXPECT_EQ(controlCharacter(U'1'), -1);
}

TEST(PasteQueue, GoesInWholeCharactersAndPausesWhereItIsAskedTo) {
  PasteQueue queue;
  queue.start("ab\xE6\xB8\xA9\nc\r\nd", "\r", {Millis(0), Millis(50)});
  const auto expect = [&queue](std::size_t room, std::string_view text, int pause) {
    const auto step = queue.next(room);
    EXPECT_EQ(step.text, text);
    EXPECT_EQ(step.pause, Millis(pause));
  };
  expect(3, "ab", 0);
  expect(1, "\xE6\xB8\xA9", 0);
  expect(100, "\r", 50);
  expect(100, "c\r", 50);
  expect(100, "d", 0);
  EXPECT_FALSE(queue.active());
  queue.start("a\r\nb", "", {Millis(5), Millis(50)});
  expect(100, "a", 5);
  expect(100, "\r\n", 55);
}

TEST(RollingLog, KeepsEveryByteInFilesOfTheirSizeAndOnlySoMany) {
  platform::MemoryFiles files;
  RollingLog log(files);
  EXPECT_EQ(logName("/a.b/log", "2030-01-02 03:04:05", 1), "/a.b/log-2030-01-02-030405");
  ASSERT_TRUE(log.start("/l/t.log", "2030-01-02 03:04:05", {1000, 3}));
  std::string all;
  for (int i = 0; all.size() < 3500; ++i) {
    const std::string line = std::to_string(i) + "\n";
    all += line;
    ASSERT_TRUE(log.write(platform::bytesOf(line)));
    if (i % 40 == 0) {
      ASSERT_TRUE(log.flush());
    }
  }
  ASSERT_TRUE(log.stop());
  EXPECT_EQ(log.bytes(), all.size());
  EXPECT_FALSE(files.fileExists("/l/t-2030-01-02-030405.log")) << "the oldest one went";
  std::string kept;
  for (const char* part : {"-2", "-3", "-4"}) {
    const auto bytes = files.read(std::string("/l/t-2030-01-02-030405") + part + ".log");
    ASSERT_TRUE(bytes) << part;
    EXPECT_LE(bytes->size(), 1000U);
    kept.append(bytes->begin(), bytes->end());
  }
  EXPECT_EQ(kept, all.substr(1000));
}

}  // namespace
}  // namespace kvr::comtool
