#include <gtest/gtest.h>

#include "tests/monitor/stream_check.h"

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

}  // namespace
}  // namespace kvr::monitor
