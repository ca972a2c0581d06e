// Erase, data blocks and the frame that closes programming.
#include <algorithm>

#include "sim/chip.h"
#include "sim/fault_text.h"

namespace sim {

void Chip::checkErase(Micros at, const HostFrame& frame) {
  const auto p = frame.payload(row().frame2);
  const bool longForm = letter_ == 'G' || version10() >= 57;
  const std::size_t countdown = rcFamily() ? 34 : 115;
  if (p.size() != (longForm ? 18 + countdown : 7))
    return judge(false, at, "erase: length " + std::to_string(frame.length()));
  const auto range = p.subspan(1, 6);
  const std::int64_t first = number(range.first(3)), last = number(range.last(3));
  if (letter_ < 'D') {
    judge(std::all_of(range.begin(), range.end(), [](int b) { return b == 0x33; }), at, "erase: range bytes not 0x33");
    judge(p[0] > 0, at, "erase: no sectors");
  } else {
    judge(p[0] == 0xFF, at, "erase: sector count " + std::to_string(p[0]));
    judge(first <= last, at, "erase: first above last");
    judge(last <= std::max<std::int64_t>(bootStart(), row().dataStart), at, "erase: last " + std::to_string(last));
    checkEraseRange(at, first, last);
  }
  for (std::size_t i = 7; longForm && i < 18; ++i) judge(p[i] == 0, at, "erase: filling not zero");
  for (std::size_t i = 18; i < p.size(); ++i) judge(p[i] == ((0x80 - (i - 18)) & 255), at, "erase: countdown");
}

// Where the data memory lies for this firmware.
std::pair<std::int64_t, std::int64_t> Chip::dataArea() const {
  const std::int64_t apEnd = row().apEnd;
  if (letter_ == 'D') return {row().dataStart, 0x13FF};
  if (letter_ == 'E' && version10() <= 50) return {row().dataStart, 0x2FFF};
  if (letter_ != 'E') return {row().dataStart, row().dataEnd};
  const std::int64_t rounded = (apEnd + 4095) / 4096 * 4096;
  return {apEnd > 12288 ? apEnd + 1 : std::max<std::int64_t>(rounded, 4096), 0x6FFF};
}

// By the option that the chip was given last: the data memory goes with the next programming.
bool Chip::clearsDataNext() const {
  return isLateFirst(family()) ? !(options_[1] & 8) : !(options_[8] & 2);
}

// From `first` on the host sends nothing; up to `last` the data memory goes.
void Chip::checkEraseRange(Micros at, std::int64_t first, std::int64_t last) {
  eraseRange_ = {first, last};
  const auto [start, end] = dataArea();
  const bool inCode = first > 0 && first <= row().apEnd, behindSpill = first > row().apEnd + 1 && first <= end + 1;
  judge(inCode || behindSpill || first == start || first == end + 1, at, "erase: first " + std::to_string(first));
  const bool none = last == first || last == std::max(start, first);
  const bool all = clearsDataNext() && last == end;
  const bool topFree = row().topBlockFree && last == row().apEnd;
  judge(none || all || topFree, at, "erase: up to " + std::to_string(last));
  if (inCode && clearsDataNext() && !row().topBlockFree && first <= end)
    judge(all, at, "erase: spares the data memory that was to go");
}

int Chip::doErase(const HostFrame& frame) {
  constexpr int kAllSectors = 255;
  constexpr int kLargest = 124;  // of the largest models: all up to the boot block, also where that begins late
  const auto p = frame.payload(row().frame2);
  if (letter_ < 'D') {
    const bool all = p[0] == kAllSectors || p[0] == kLargest;
    const int sectors = flash_.erase(0, all ? bootStart() - 1 : p[0] * 512 - 1);
    return std::min(sectors, static_cast<int>(p[0]));
  }
  const std::int64_t first = number(p.subspan(1, 3)), last = number(p.subspan(4, 3));
  int sectors = flash_.erase(row().apStart, row().apEnd);
  // Code that runs on past its area: what lies before the address goes with it.
  if (first > row().apEnd + 1 && first != dataArea().first) flash_.erase(row().apEnd + 1, first - 1);
  if (last > row().dataStart) sectors += flash_.erase(row().dataStart, last);
  return sectors;
}

void Chip::onErase(Micros at, const HostFrame& frame) {
  checkErase(at, frame);
  if (frame.payload(row().frame2).size() < 7) return;
  judgeFair(changed_ || fixedLink_, at, "erase before the baud change");
  if (config_.faults.silentErase) return;
  const int sectors = doErase(frame);
  ++erases_;
  erased_ = true;
  programming_ = finished_ = optionsTaken_ = false;
  lastBlock_ = blockStart_ = -1;
  const Micros done = at + config_.times.turnaround + sectors * config_.times.eraseSector;
  busy(at, done, "erases " + std::to_string(sectors) + " sectors");
  journal_.note(at, "erases " + std::to_string(sectors) + " sectors");
  const bool tellsId = row().extSession && version10() >= 63;
  const std::uint8_t command = !row().extSession ? 0x84 : config_.faults.wrongEraseReply ? 0x01 : 0x00;
  schedule_.add(done, [this, tellsId, command](Micros when) { reply(when, command, tellsId ? factoryId_ : Bytes{}); });
}

bool Chip::checkData(Micros at, const HostFrame& frame) {
  const auto p = frame.payload(row().frame2);
  const auto wrong = [&](const std::string& text) {
    judge(false, at, "data frame: " + text);
    return false;
  };
  if (p.size() < 7) return wrong("length " + std::to_string(frame.length()));
  const std::int64_t address = number(p.first(4)), count = number(p.subspan(4, 2));
  if (count + 6 != static_cast<std::int64_t>(p.size())) return wrong("count " + std::to_string(count));
  if (address + count > bootStart()) return wrong("into the boot block, at " + std::to_string(address));
  const int unit = flashUnitOf(family());
  const int largest = rcFamily() && !fixedLink_ ? 64 : 128;
  judge(count <= largest, at, "data frame: " + std::to_string(count) + " bytes");
  judge(address / unit == (address + count - 1) / unit, at,
        "data frame: crosses a block at " + std::to_string(address));
  judge(erased_ || version10() <= 2, at, "data frame: nothing was erased");
  judge(!finished_ && !optionsTaken_, at, "data frame: after the end of programming");
  const std::int64_t block = address / unit;
  if (frame.command() == 0x30)
    judgeFair(address == blockStart_, at, "repeated frame at " + std::to_string(address) + " begins no known block");
  else
    judgeFair(block >= lastBlock_, at, "data frame: order, block " + std::to_string(block));
  return true;
}

bool Chip::failsNow(int block, std::int64_t address) {
  return address == blockStart_ && countDown(failuresLeft_, block);
}

void Chip::answerData(Micros at, int sum) {
  const std::uint8_t echo = static_cast<std::uint8_t>(sum);
  if (row().extSession) {
    reply(at, 0x00, std::span(&echo, 1));
  } else {
    reply(at, 0x80, std::span(&echo, config_.shortDataReplies ? 0 : 1));
  }
}

// The erase spares the data memory when the option says so; what is then sent for it replaces sector by sector.
void Chip::freeDataSector(std::int64_t address) {
  constexpr std::int64_t kSector = 512;
  const bool inData = address >= dataArea().first && address > row().apEnd && letter_ >= 'D';
  if (!config_.dataSectorsErase || !inData || flash_.isErased(static_cast<std::size_t>(address))) return;
  // What lies before it in the sector has been written by then: data comes in rising order.
  flash_.erase(address, address / kSector * kSector + kSector - 1);
}

void Chip::onData(Micros at, const HostFrame& frame) {
  if (!checkData(at, frame)) return;
  const auto p = frame.payload(row().frame2);
  const std::int64_t address = number(p.first(4));
  const auto data = p.subspan(6);
  const int unit = flashUnitOf(family());
  const int block = static_cast<int>(address / unit);
  if (frame.command() == 0x30 || block != lastBlock_) blockStart_ = address;
  lastBlock_ = block;
  programming_ = true;
  int sum = 0;
  for (const std::uint8_t byte : data) sum += byte;
  if (failsNow(block, address)) {
    journal_.note(at, "block " + std::to_string(block) + " fails");
    const auto& all = config_.faults.failsBlocks;
    const auto it = std::find_if(all.begin(), all.end(), [&](const BlockFailure& f) { return f.block == block; });
    // Without a sum in its answers a chip has no other way to say that it failed.
    if (!it->silently && !config_.shortDataReplies) answerData(at + config_.times.turnaround, sum ^ 0xFF);
    return;
  }
  freeDataSector(address);
  flash_.write(static_cast<std::size_t>(address), data);
  ++dataFrames_;
  if ((address + static_cast<std::int64_t>(data.size())) % unit == 0) ++blocksDone_;
  if (config_.faults.diesAfterBlocks >= 0 && blocksDone_ >= config_.faults.diesAfterBlocks) return powerOff(at);
  const Micros done = at + config_.times.turnaround + static_cast<Micros>(data.size()) * config_.times.programByte;
  busy(at, done, "programs");
  schedule_.add(done, [this, sum](Micros when) { answerData(when, sum); });
}

void Chip::onFinish(Micros at, const HostFrame& frame) {
  checkGeneric(at, frame, 0, true);
  judge(row().extSession, at, "finish frame outside the later session");
  judge(!row().noOptions, at, "finish frame to a chip without options");
  judgeFair(programming_, at, "finish frame before any data");
  finished_ = true;
  if (config_.faults.dropsFinishReply) return;
  reply(at + config_.times.turnaround, config_.faults.wrongFinishReply ? 0x00 : 0x8D, {});
}

}  // namespace sim
