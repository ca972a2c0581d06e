#include "sim/board.h"

#include <gtest/gtest.h>

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

}  // namespace
}  // namespace sim
