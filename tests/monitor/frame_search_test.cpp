#include <gtest/gtest.h>

#include <random>

#include "tests/monitor/stream_check.h"
#include "tests/support/corpus.h"

namespace kvr::monitor {
namespace {

TEST(FrameSearch, FindsAllFourTypesBetweenTextWhereverTheStreamIsCut) {
  const Bytes stream = textBytes("boot\xA5!\xA5\r\n") + dump(0, counting(128, 128), 0x80) + textBytes("\xA5\x5A!") +
                       dump(1, counting(256)) + Bytes{0xA5} + dump(2, counting(1024)) + Bytes{0xA5, 0x5A} +
                       dump(3, counting(512), 0x1234) + textBytes("end");
  FrameSearch whole;
  const auto expected = whole.feed(stream);
  ASSERT_EQ(expected.size(), 4U);
  for (int type = 0; type < 4; ++type) EXPECT_EQ(expected[static_cast<std::size_t>(type)][3], type);
  EXPECT_EQ(faultOf(stream), "");
}

TEST(FrameSearch, FramesTooShortForTheirRegistersSayNothing) {
  for (std::size_t length = 4; length <= 18; ++length) {
    Bytes frame{0xAA, 0, static_cast<std::uint8_t>(length), 0};
    frame.resize(length - 1, 0);
    frame.push_back(static_cast<std::uint8_t>(std::accumulate(frame.begin(), frame.end(), 0)));
    FrameSearch search;
    const auto found = search.feed(Bytes{0xA5, 0x5A} + frame);
    if (length == 4) continue;  // its type is its sum
    ASSERT_EQ(found.size(), 1U) << length;
    EXPECT_EQ(readRecord(found[0]).has_value(), length >= 17) << length;
  }
}

// Frames with bytes flipped, lost, doubled and put in.
TEST(FrameSearch, SurvivesMutatedStreams) {
  std::mt19937 random(2024);
  for (int round = 0; round < 300; ++round) {
    Bytes stream;
    for (int i = 0; i < 3; ++i)
      stream =
          stream + dump(static_cast<int>(random() % 6), counting(random() % 60), static_cast<int>(random() % 65536));
    for (std::uint32_t i = random() % 5; i > 0; --i) {
      const auto at = stream.begin() + static_cast<std::ptrdiff_t>(random() % stream.size());
      switch (random() % 4) {
        case 0:
          *at ^= static_cast<std::uint8_t>(1U << random() % 8);
          break;
        case 1:
          stream.erase(at);
          break;
        case 2:
          stream.insert(at, *at);
          break;
        default:
          stream.insert(at, Bytes{0xA5, 0x5A, 0xAA}[random() % 3]);
          break;
      }
    }
    ASSERT_EQ(faultOf(stream), "") << round;
  }
}

TEST(FrameSearch, ReadsEveryStreamOfTheCorpusAsTheSecondReadingDoes) {
  support::replayCorpus("monitor", faultOf);
}

}  // namespace
}  // namespace kvr::monitor
