// The off-line board: how long its memory image takes to build, and how close writing it comes to what the wire, the
// board and the turn-rounds take by themselves.
#include <chrono>

#include "benchmarks/figure.h"
#include "offline/board_header.h"
#include "offline/increment_blocks.h"
#include "tests/offline/offline_bench.h"

namespace {

using namespace kvr::offline;

constexpr int kCodeSize = 60 * 1024;

double buildOnce(const kvr::catalogue::McuRecord& record, const Bytes& code) {
  const auto begin = std::chrono::steady_clock::now();
  BoardInputs inputs;
  inputs.record = &record;
  inputs.device = std::string(record.name);
  inputs.limit = 100000;
  inputs.capacity = 65536;
  const FileBuffer file = prepareFileBuffer(record, {code, 0, kCodeSize - 1, true}, {});
  BoardImage image;
  image.clear();
  image.writeLimit(inputs.limit);
  placeIncrement(false, makeIncrementBlock(inputs.codeIncrement, 0).bytes, image.header());
  fillBoardHeader(inputs, file, fitCode(record, inputs.capacity, file), image.header());
  image.writeCrcTable(file);
  image.placeCode(file);
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin).count();
}

// What the board is left between an answer and the frame after it.
sim::Micros turnRound(const sim::Unit& frame) {
  const bool data = frame.bytes.size() > 5 && (frame.bytes[5] == 0x00 || frame.bytes[5] == 0x30);
  return (data ? 1 : 10) * sim::kMillisecond;
}

// From the board's first answer to the last bit on the wire, over the time that nobody could save: every byte of both
// sides, the board's own work, and the turn-rounds.
double floorRatio() {
  sim::BoardConfig config;
  config.version = 0x17;
  config.secondBank = true;
  config.deaf = 500;
  OfflineBench bench(config);
  bench.loadNoise(kCodeSize);
  bench.run(Millis(0));
  if (!bench.saidOk()) return -1;
  sim::Micros first = -1, last = 0, floor = 0;
  bool answered = false;
  for (const sim::Unit& unit : bench.wire.log()) {
    const bool reply = unit.direction == sim::Direction::deviceToHost;
    if (first < 0 && !reply) continue;
    if (first < 0) first = unit.start;
    last = std::max(last, unit.end);
    floor += unit.end - unit.start;
    if (answered && !reply) floor += turnRound(unit);
    answered = reply;
  }
  for (const sim::StatedTime& work : bench.board.journal().statedTimes()) floor += work.to - work.from;
  return static_cast<double>(last - first) / static_cast<double>(floor);
}

}  // namespace

int main() {
  const kvr::catalogue::McuRecord& record = *kvr::catalogue::findByName("Ivy-HF0S");
  const Bytes code = seededNoise(65536, 7);
  std::vector<double> times;
  for (int i = 0; i < 31; ++i) times.push_back(buildOnce(record, code));
  bench::figure("board.build_ms", bench::median(times), "ms");
  return bench::atMost("board.floor_ratio", floorRatio(), "ratio", 1.01) ? 0 : 1;
}
