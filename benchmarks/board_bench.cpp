// The off-line board: how long its memory image takes to build, and how close writing it comes to what the wire, the
// board and the gathering of replies take by themselves.
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

// From the board's first answer to the last bit on the wire, over the time that nobody could save: every byte of both
// sides, the board's own work, and the 10 ms from its first byte on that gather each reply.
double floorRatio() {
  sim::BoardConfig config;
  config.version = 0x17;
  config.secondBank = true;
  OfflineBench bench(config);
  bench.loadNoise(kCodeSize);
  bench.run(Millis(0));
  if (!bench.saidOk()) return -1;
  constexpr sim::Micros kGather = 10 * sim::kMillisecond;
  sim::Micros first = -1, last = 0, floor = 0;
  for (const sim::Unit& unit : bench.wire.log()) {
    const bool reply = unit.direction == sim::Direction::deviceToHost;
    if (first < 0 && !reply) continue;
    if (first < 0) first = unit.start;
    last = std::max(last, unit.end);
    const sim::Micros wire = unit.end - unit.start;
    const sim::Micros firstByte = wire / static_cast<sim::Micros>(unit.bytes.size());
    floor += reply ? std::max(wire, firstByte + kGather) : wire;
  }
  for (const sim::StatedTime& work : bench.board.journal().statedTimes()) floor += work.to - work.from;
  return static_cast<double>(last - first) / static_cast<double>(floor - kGather);  // nothing follows the last reply
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
