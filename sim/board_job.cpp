#include "sim/board_job.h"

#include <algorithm>
#include <bit>

namespace sim {

namespace {

constexpr std::size_t kHeaderAt = 0xEC00, kUnitsOf2048At = 0xED00, kUnitsOf1At = 0xEE00, kCrcTableAt = 0xF000;
constexpr std::size_t kUnitsOf2048Size = 64;  // above them lie the board's own counters
constexpr std::size_t kUnitsOf1Size = 256;
constexpr std::int64_t kCrcBlock = 128;
constexpr std::int64_t kTailStart = 44032;  // where the main area ends, in the chip's memory
constexpr std::int64_t kSecondBankFirst = 16384, kSecondBankLast = 35840;

std::int64_t field(std::span<const std::uint8_t> bytes, std::size_t at, std::size_t count) {
  return number(bytes.subspan(at, count));
}

BoardCounter counterAt(std::span<const std::uint8_t> h, std::size_t at, std::size_t nextAt) {
  BoardCounter counter;
  counter.on = h[at] == 1;
  counter.firstAddress = field(h, at + 1, 3);
  counter.firstLength = h[at + 4];
  counter.secondAddress = field(h, at + 5, 3);
  counter.secondLength = h[at + 8];
  counter.step = h[at + 9];
  counter.radix = h[at + 10];
  counter.next = static_cast<std::uint32_t>(field(h, nextAt, 4));
  return counter;
}

std::int64_t onesIn(std::span<const std::uint8_t> bytes) {
  std::int64_t ones = 0;
  for (const std::uint8_t byte : bytes) ones += std::popcount(byte);
  return ones;
}

void setOnes(std::span<std::uint8_t> bytes, std::int64_t ones) {
  for (std::uint8_t& byte : bytes) {
    const auto here = std::clamp<std::int64_t>(ones, 0, 8);
    byte = static_cast<std::uint8_t>((1 << here) - 1);
    ones -= here;
  }
}

}  // namespace

Bytes BoardCounter::field() const {
  const int length = firstLength + secondLength;
  Bytes bytes(static_cast<std::size_t>(length));
  std::uint32_t left = next;
  for (int i = length - 1; i >= 0; --i) {
    const std::uint32_t base = radix == 0 ? 256 : radix == 1 ? 100 : 10;
    const std::uint32_t part = left % base;
    left /= base;
    bytes[static_cast<std::size_t>(i)] = static_cast<std::uint8_t>(radix == 0   ? part
                                                                   : radix == 1 ? part / 10 * 16 + part % 10
                                                                                : '0' + part);
  }
  return bytes;
}

std::optional<BoardHeader> BoardJob::header(std::string& fault) const {
  const auto h = std::span<const std::uint8_t>(memory_.main).subspan(kHeaderAt, 256);
  const std::uint16_t crc = crc16(h.first(254));
  if (h[254] != (crc & 255) || h[255] != (crc >> 8)) return fault = "header: CRC", std::nullopt;
  BoardHeader header;
  for (std::size_t i = 0; i < 31 && h[i]; ++i) header.model += static_cast<char>(h[i]);
  header.code = {h[32], h[33]};
  header.altCode = {h[34], h[35]};
  bool* const flags[] = {&header.extSession, &header.parityUsed, &header.parityEven,
                         &header.frame2,     &header.noOptions,  &header.topBlockFree};
  for (std::size_t i = 0; i < 6; ++i) {
    if (h[36 + i] != 0 && h[36 + i] != 0xFF) return fault = "header: flag " + std::to_string(36 + i), std::nullopt;
    *flags[i] = h[36 + i] != 0;
  }
  header.pins = h[42];
  header.noDataFile = h[43] != 0;
  header.checks = h[44];
  std::copy_n(h.begin() + 48, 16, header.options.begin());
  header.mainFirst = field(h, 64, 3);
  header.mainLast = field(h, 67, 3);
  header.mainTarget = field(h, 70, 3);
  header.mainTargetLast = field(h, 73, 3);
  header.tailFirst = field(h, 88, 3);
  header.tailLast = field(h, 91, 3);
  header.tailTarget = field(h, 94, 3);
  header.tailTargetLast = field(h, 97, 3);
  header.codeLast = field(h, 112, 3);
  header.blockSize = static_cast<int>(field(h, 150, 2));
  header.codeCounter = counterAt(h, 128, 144);
  header.dataCounter = counterAt(h, 220, 236);
  const bool sound = header.mainFirst == 0x4000 &&
                     header.mainLast - header.mainFirst == header.mainTargetLast - header.mainTarget &&
                     header.mainLast < static_cast<std::int64_t>(kHeaderAt) && header.codeLast < 65536 &&
                     header.tailLast - header.tailFirst == header.tailTargetLast - header.tailTarget;
  if (!sound) return fault = "header: areas", std::nullopt;
  return header;
}

std::int64_t BoardJob::remaining() const {
  const std::span<const std::uint8_t> memory(memory_.main);
  return 2048 * onesIn(memory.subspan(kUnitsOf2048At, kUnitsOf2048Size)) +
         onesIn(memory.subspan(kUnitsOf1At, kUnitsOf1Size));
}

std::optional<std::uint8_t> BoardJob::source(const BoardHeader& header, std::int64_t target) const {
  if (target < kTailStart) return memory_.main[static_cast<std::size_t>(header.mainFirst + target)];
  if (!tailWritten_) return std::nullopt;
  const std::int64_t along = target - kTailStart;
  if (!memory_.second.empty()) {
    if (kSecondBankFirst + along > kSecondBankLast) return std::nullopt;
    return memory_.second[static_cast<std::size_t>(kSecondBankFirst + along)];
  }
  if (target > header.tailTargetLast) return std::nullopt;
  return memory_.main[static_cast<std::size_t>(header.tailFirst + along)];
}

std::optional<Bytes> BoardJob::blockOf(const BoardHeader& header, std::int64_t block) const {
  Bytes bytes;
  for (std::int64_t target = block * kCrcBlock; target < (block + 1) * kCrcBlock; ++target) {
    const auto byte = source(header, target);
    if (!byte) return std::nullopt;
    bytes.push_back(*byte);
  }
  return bytes;
}

std::string BoardJob::burn(const BoardHeader& header, FlashMemory& chip, std::int64_t& leftOut) {
  for (std::int64_t block = 0; block <= header.codeLast / kCrcBlock; ++block) {
    const std::int64_t first = block * kCrcBlock;
    const std::int64_t count = std::min(kCrcBlock, header.codeLast + 1 - first);
    const auto bytes = blockOf(header, block);
    if (!bytes) {
      leftOut += count;
      continue;
    }
    const std::size_t entry = kCrcTableAt + static_cast<std::size_t>(block) * 2;
    const std::uint16_t crc = crc16(*bytes);
    if (memory_.main[entry] != (crc & 255) || memory_.main[entry + 1] != (crc >> 8))
      return "code: CRC of block " + std::to_string(block);
    if (!chip.write(static_cast<std::size_t>(first), std::span(*bytes).first(static_cast<std::size_t>(count))))
      return "code: block " + std::to_string(block) + " lies in the boot block";
  }
  for (const BoardCounter& counter : {header.codeCounter, header.dataCounter}) {
    if (!counter.on) continue;
    const Bytes field = counter.field();
    const auto run = std::span<const std::uint8_t>(field);
    const bool written = chip.write(static_cast<std::size_t>(counter.firstAddress),
                                    run.first(static_cast<std::size_t>(counter.firstLength))) &&
                         chip.write(static_cast<std::size_t>(counter.secondAddress),
                                    run.last(static_cast<std::size_t>(counter.secondLength)));
    if (!written) return "the running number lies in the boot block";
  }
  return {};
}

void BoardJob::takeOneOff() {
  const auto memory = std::span(memory_.main);
  const auto big = memory.subspan(kUnitsOf2048At, kUnitsOf2048Size);
  const auto small = memory.subspan(kUnitsOf1At, kUnitsOf1Size);
  const std::int64_t left = remaining() - 1;
  setOnes(big, left / 2048);
  setOnes(small, left % 2048);
}

void BoardJob::stepNumbers(const BoardHeader& header) {
  const auto h = std::span(memory_.main).subspan(kHeaderAt, 256);
  const auto put = [&](std::size_t at, const BoardCounter& counter) {
    const std::uint32_t next = counter.next + static_cast<std::uint32_t>(counter.step);
    if (!counter.on) return;
    for (std::size_t i = 0; i < 4; ++i) h[at + i] = static_cast<std::uint8_t>(next >> (24 - 8 * i));
  };
  put(144, header.codeCounter);
  put(236, header.dataCounter);
  const std::uint16_t crc = crc16(h.first(254));
  h[254] = static_cast<std::uint8_t>(crc);
  h[255] = static_cast<std::uint8_t>(crc >> 8);
}

BoardRun BoardJob::programNext(FlashMemory& chip) {
  BoardRun run;
  const auto found = header(run.why);
  if (!found) return run;
  if (remaining() <= 0) {
    run.why = "the download limit is used up";
    return run;
  }
  chip.erase(0, static_cast<std::int64_t>(chip.bytes().size()) - 1);
  run.options = found->options;
  run.why = burn(*found, chip, run.leftOut);
  run.done = run.why.empty();
  if (!run.done) return run;
  takeOneOff();
  stepNumbers(*found);
  return run;
}

}  // namespace sim
