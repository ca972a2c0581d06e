// Commands as typed, and the receiver of the routine's replies.
#include <gtest/gtest.h>

#include "userpath/demo_frames.h"
#include "userpath/user_bytes.h"

namespace {

using namespace kvr::userpath;
using Bytes = std::vector<std::uint8_t>;

TEST(UserBytes, ReadsPairsAsAPersonTypesThem) {
  for (const auto& [text, bytes] : {std::pair("   ", Bytes{}),
                                    {"12 34", {0x12, 0x34}},
                                    {"1234", {0x12, 0x34}},
                                    {" aB  c ", {0xAB, 0x0C}},
                                    {", 12", {0x12}},
                                    {"12,34", {0x12, 0x04}},
                                    {"..55", {0x55}},
                                    {"1G", {0x01}},
                                    {"GG", {0x00}},
                                    {"é12", {0x00, 0x02}}})
    EXPECT_EQ(parseUserBytes(text), bytes) << text;
}

const Bytes kReply{0x5A, 0xA5, 0x00, 0x0B, 0xB5, 0x00, 0x40, 0x02, 0x02, 0x01, 0x16};

TEST(DemoReceiver, HearsAReplyAfterOneThatSaysItIsOneToThreeBytesLong) {
  for (const std::uint8_t length : {1, 2, 3}) {
    DemoReceiver rx;
    rx.take(Bytes{0x5A, 0xA5, 0x00, length});
    rx.take(kReply);
    EXPECT_TRUE(rx.frameOk) << int{length};
  }
}

TEST(DemoReceiver, TellsAWrongEndFromAWrongSum) {
  DemoReceiver rx;
  Bytes damaged = kReply;
  damaged.back() = 0x17;
  rx.take(damaged);
  EXPECT_FALSE(rx.frameOk);
  EXPECT_TRUE(rx.buffer.empty());
  rx.take(kReply);
  EXPECT_TRUE(rx.frameOk) << "the next reply is heard";

  rx.clear();
  damaged = kReply;
  damaged[7] ^= 1;
  rx.take(damaged);
  rx.take(kReply);
  EXPECT_FALSE(rx.frameOk) << "the time limit ends this one";
  for (const Bytes& odd : {Bytes{0x5A, 0xA5, 0, 0}, Bytes{0x5A, 0xA5, 0, 5, 0x16}, Bytes{0x5A, 0xA5, 0xFF, 0xFF}}) {
    rx.clear();
    rx.take(odd);
    rx.take(Bytes(3000, 0x16));
    EXPECT_FALSE(rx.frameOk);
    EXPECT_LE(rx.buffer.size(), DemoReceiver::kCapacity);
  }
}

}  // namespace
