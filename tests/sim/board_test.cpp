#include "sim/board.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "sim/wire.h"

namespace sim {
namespace {

const Bytes kWake = {0x46, 0xB9, 0x6A, 0x00, 0x13, 0xF0, 1, 4, 0, 2, 3, 4, 5, 6, 7, 8, 1, 0x95, 0x7F, 0x07, 0x16};

class Bench {
 public:
  explicit Bench(BoardConfig config, WireConfig wireConfig = {})
      : board(std::move(config)), wire(std::move(wireConfig)) {
    wire.connect(&board);
    board.powerOn(0);
    wire.open({115200, 'e'}, now);
    ask(kWake, 10);
    wire.open({115200, 'n'}, now);
  }
  Bytes ask(const Bytes& bytes, int milliseconds) {
    wire.clearIn(now);
    wire.write(bytes, now);
    now += milliseconds * kMillisecond;
    const Bytes got = wire.take(now);
    return got.size() > 2 ? Bytes(got.begin() + 2, got.end()) : Bytes{};
  }
  Bytes command(int command, int argument, int milliseconds) {
    return ask(frame(command, {7, static_cast<std::uint8_t>(argument), 0x36, 1, 0xD1, 0x64}), milliseconds);
  }
  // 128 bytes at a time; false at the first frame that is not acknowledged.
  bool write(const Bytes& image, int first, int last) {
    for (int at = first; at <= last; at += 128) {
      const int count = std::min(128, last + 1 - at);
      Bytes p = {
          0, 0, static_cast<std::uint8_t>(at >> 8), static_cast<std::uint8_t>(at), 0, static_cast<std::uint8_t>(count)};
      p.insert(p.end(), image.begin() + at, image.begin() + at + count);
      const Bytes reply = ask(frame(0x00, p), 20);
      if (reply.size() < 4 || reply[3] != 0x80) return false;
    }
    return true;
  }
  static Bytes frame(int command, const Bytes& payload) {
    Bytes bytes = {
        0x46, 0xB9, 0x6A, 0, static_cast<std::uint8_t>(payload.size() + 7), static_cast<std::uint8_t>(command)};
    bytes.insert(bytes.end(), payload.begin(), payload.end());
    const std::uint16_t crc = crc16(std::span(bytes).subspan(2));
    bytes.insert(bytes.end(), {static_cast<std::uint8_t>(crc), static_cast<std::uint8_t>(crc >> 8), 0x16});
    return bytes;
  }

  Board board;
  Wire wire;
  Micros now = 0;
};

// An image for code of `size` bytes, a limit of three chips and a BCD number of four bytes across a block's boundary.
struct Image {
  explicit Image(int size) : code(65536), bytes(65536) {
    for (std::size_t i = 0; i < static_cast<std::size_t>(size); ++i)
      code[i] = static_cast<std::uint8_t>(i * 7 + i / 256);
    Bytes stored = code;
    std::fill_n(stored.begin() + 0x7E, 4, 0xFF);
    std::copy_n(stored.begin(), 44032, bytes.begin() + 0x4000);
    std::copy_n(stored.begin() + 44032, 8192, bytes.begin() + 0x2000);
    std::copy_n(stored.begin() + 44032, 65536 - 44032 - 2048, second.begin() + 0x4000);
    bytes[0xEE00] = 7;
    for (std::size_t k = 0; k < 512; ++k) put16(0xF000 + 2 * k, crc16(std::span(stored).subspan(k * 128, 128)));
    const int last = size - 1, mainLast = std::min(last, 44031);
    put(64, 0x004000), put(67, 0x4000 + mainLast), put(73, mainLast), put(88, 0x2000), put(91, 0x3FFF), put(94, 44032),
        put(97, 52223), put(112, last);
    const Bytes counter = {1, 0, 0, 0x7E, 2, 0, 0, 0x80, 2, 5, 1};
    std::copy(counter.begin(), counter.end(), bytes.begin() + 0xEC00 + 128);
    bytes[0xEC00 + 147] = 98;
    bytes[0xEC00 + 150] = 2;
    put16(0xECFE, crc16(std::span(bytes).subspan(0xEC00, 254)));
  }
  void put(std::size_t at, int value) {
    for (std::size_t i = 0; i < 3; ++i) bytes[0xEC00 + at + i] = static_cast<std::uint8_t>(value >> (16 - 8 * i));
  }
  void put16(std::size_t at, int value) {
    bytes[at] = static_cast<std::uint8_t>(value);
    bytes[at + 1] = static_cast<std::uint8_t>(value >> 8);
  }
  Bytes code, bytes, second = Bytes(65536);
};

TEST(SimulatedBoard, TakesAnImageInTwoStagesAndProgramsThreeChipsFromItAndNoFourth) {
  for (const bool secondBank : {false, true}) {
    BoardConfig config;
    config.version = 0x16;
    config.secondBank = secondBank;
    Bench bench(config);
    const int size = secondBank ? 60000 : 50000;
    const Image image(size);
    for (int i = 0; i < 12; ++i) EXPECT_FALSE(bench.command(0x80, 0xF3, 20).empty());
    EXPECT_EQ(bench.command(0x0C, 0, 20).at(4), 0x16);
    EXPECT_EQ(bench.command(0x0E, 0, 20).at(4), secondBank ? 1 : 0);
    EXPECT_FALSE(bench.command(0x84, 0, 2000).empty());
    EXPECT_TRUE(bench.write(image.bytes, 16384, 62463));
    EXPECT_FALSE(bench.command(0x86, 0, 600).empty());
    EXPECT_FALSE(bench.command(0x80, 0xF1, 20).empty());
    EXPECT_TRUE(secondBank ? bench.write(image.second, 16384, 35840) : bench.write(image.bytes, 8192, 16383));
    EXPECT_EQ(bench.board.journal().violationText(), "");
    Bytes number = {0, 0, 0, 0x98};
    for (int chip = 0; chip < 4; ++chip) {
      FlashMemory memory(65536, 62464, 5);
      const BoardRun run = bench.board.job().programNext(memory);
      EXPECT_EQ(run.done, chip < 3) << run.why;
      if (chip == 3) continue;
      EXPECT_EQ(run.leftOut, 0);
      EXPECT_TRUE(std::equal(number.begin(), number.end(), memory.bytes().begin() + 0x7E));
      EXPECT_TRUE(std::equal(memory.bytes().begin() + 0x82, memory.bytes().begin() + size, image.code.begin() + 0x82));
      number = chip == 0 ? Bytes{0, 0, 1, 3} : Bytes{0, 0, 1, 8};
    }
    bench.board.memory().main[0x4000 + 700] ^= 1;
    bench.board.memory().main[0xEE00] = 1;
    FlashMemory memory(65536, 62464, 5);
    EXPECT_EQ(bench.board.job().programNext(memory).why, "code: CRC of block 5");
  }
}

TEST(SimulatedBoard, TellsHowMuchOfALargeCodeItsMemoryDoesNotHold) {
  Bench bench({});
  const Image image(50000);
  bench.command(0x84, 0, 2000);
  EXPECT_TRUE(bench.write(image.bytes, 16384, 63487));
  FlashMemory memory(65536, 62464, 5);
  const BoardRun run = bench.board.job().programNext(memory);
  EXPECT_TRUE(run.done) << run.why;
  EXPECT_EQ(run.leftOut, 50000 - 44032);
}

TEST(SimulatedBoard, HoldsAgainstTheHostWhatTheHostDoesWrong) {
  struct Wrong {
    const char* what;
    Bytes frame;
  };
  Bytes outside = {0, 0, 0x3F, 0x80, 0, 64}, skipped = {0, 0, 0x42, 0x00, 0, 64}, retried = {0, 0, 0x40, 0x00, 0, 64};
  for (Bytes* p : {&outside, &skipped, &retried}) p->insert(p->end(), 64, 1);
  Bytes badCrc = Bench::frame(0x80, {7, 0xF3, 0x36, 1, 0xD1, 0x64});
  badCrc[12] ^= 1;
  for (const Wrong& wrong : {Wrong{"address", Bench::frame(0x00, outside)}, Wrong{"order", Bench::frame(0x00, skipped)},
                             Wrong{"not begun", Bench::frame(0x30, retried)}, Wrong{"bad length, CRC", badCrc},
                             Wrong{"argument", Bench::frame(0x80, {7, 0xF1, 0x36, 1, 0xD1, 0x64})},
                             Wrong{"another model", Bench::frame(0x0E, {7, 0, 0x36, 1, 0xD1, 0x65})},
                             Wrong{"first is whole", Bench::frame(0x86, {7, 0, 0x36, 1, 0xD1, 0x64})}}) {
    Bench bench({});
    bench.command(0x84, 0, 2000);
    bench.ask(wrong.frame, 20);
    EXPECT_NE(bench.board.journal().violationText().find(wrong.what), std::string::npos) << wrong.what;
  }
  Bench plain({});
  plain.ask(kWake, 10);
  EXPECT_NE(plain.board.journal().violationText().find("without parity"), std::string::npos);
}

TEST(SimulatedBoard, FailsAsItIsTold) {
  BoardConfig config;
  ASSERT_TRUE(setBoardFault(config, "silent", "80:2"));
  ASSERT_TRUE(setBoardFault(config, "wrongReply", "0E:1"));
  ASSERT_TRUE(setBoardFault(config, "failsPage", "33:1"));
  EXPECT_FALSE(setBoardFault(config, "failsPage", "33"));
  EXPECT_FALSE(setBoardFault(config, "nonsense", "1"));
  Bench bench(config);
  EXPECT_TRUE(bench.command(0x80, 0xF3, 20).empty());
  EXPECT_TRUE(bench.command(0x80, 0xF3, 20).empty());
  EXPECT_FALSE(bench.command(0x80, 0xF3, 20).empty());
  EXPECT_NE(bench.command(0x0E, 0, 20).at(3), 0x0E);
  EXPECT_EQ(bench.command(0x0E, 0, 20).at(3), 0x0E);
  bench.command(0x84, 0, 2000);
  EXPECT_TRUE(bench.write(Bytes(65536), 16384, 16384 + 511));
  EXPECT_FALSE(bench.write(Bytes(65536), 16384 + 512, 16384 + 1023));
  EXPECT_EQ(bench.board.journal().violationText(), "");
}

}  // namespace
}  // namespace sim
