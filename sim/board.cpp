#include "sim/board.h"

#include <algorithm>

#include "sim/fault_text.h"

namespace sim {

namespace {

const Bytes kWake = {0x46, 0xB9, 0x6A, 0x00, 0x13, 0xF0, 1, 4, 0, 2, 3, 4, 5, 6, 7, 8, 1, 0x95, 0x7F, 0x07, 0x16};
constexpr std::int64_t kPage = 512;

}  // namespace

bool setBoardFault(BoardConfig& config, std::string_view name, std::string_view value) {
  if (name == "secondBank") return config.secondBank = true;
  if (name == "version") return toNumber(value, config.version, 16);
  if (name == "capacity") return toNumber(value, config.capacityKb);
  if (name == "diesAfterPages") return toNumber(value, config.diesAfterPages);
  const auto counted = parseCounted(value, name == "failsPage" ? 10 : 16);
  if (!counted) return false;
  if (name == "failsPage") {
    config.failsPages.push_back({counted->what, counted->times, counted->silently});
    return true;
  }
  std::map<int, int>* const counts = name == "silent"       ? &config.silentTo
                                     : name == "wrongReply" ? &config.wrongReplyTo
                                     : name == "badCrc"     ? &config.badCrcTo
                                                            : nullptr;
  if (counts) (*counts)[counted->what] = counted->times;
  return counts != nullptr;
}

Board::Board(BoardConfig config) : config_(std::move(config)), reader_(FrameCheck::crc, config_.frameGap) {
  if (config_.secondBank) memory_.second = Bytes(65536, 0xFF);
  std::uint32_t state = config_.seed;  // what a former job left behind
  const auto fill = [&](std::uint8_t& byte) {
    byte = static_cast<std::uint8_t>((state = state * 1664525 + 1013904223) >> 24);
  };
  std::for_each(memory_.main.begin(), memory_.main.end(), fill);
  std::for_each(memory_.second.begin(), memory_.second.end(), fill);
  for (const PageFailure& failure : config_.failsPages) pageFailures_[failure.page] = failure.times;
}

std::optional<Micros> Board::nextDue() const {
  return schedule_.nextDue();
}

void Board::advanceTo(Micros now) {
  schedule_.advanceTo(now);
}

void Board::powerOn(Micros at) {
  schedule_.addPowerChange(at, [this](Micros when) {
    journal_.note(when, "power on");
    on_ = true;
    disturbed_ = false;
    stage_ = 0;
    pages_[0] = pages_[1] = 0;
    identity_.reset();
    busyUntil_ = when;
    reader_.reset();
  });
}

void Board::powerOff(Micros at) {
  schedule_.addPowerChange(at, [this](Micros when) {
    journal_.note(when, "power off");
    on_ = false;
  });
}

void Board::disturbed(Micros at) {
  disturbed_ = true;
  ++disturbances_;
  journal_.note(at, "the wire disturbs the conversation");
}

// The wake frame comes with parity and all others without, at a time that the board cannot know: it takes both.
std::optional<Line> Board::line() const {
  return std::nullopt;
}

void Board::judge(bool good, Micros at, const std::string& text) {
  if (good) return;
  if (disturbed_)
    journal_.note(at, "excused after a disturbance: " + text);
  else
    journal_.violation(at, text);
}

void Board::hear(Micros end, const Heard& heard) {
  advanceTo(end);
  if (!on_ || end < busyUntil_) return;
  if (heard.damage == Damage::wrongLine) return;
  if (deafness_.swallows(end, heard.line)) {
    disturbed_ = true;  // the host cannot know how long
    return;
  }
  const HostFrame* frame = reader_.take(end, heard);
  if (!frame) return;
  if (!frame->endGood || !frame->sumGood) {
    if (!frame->damaged) judge(false, end, "frame with a bad length, CRC or end");
    return;
  }
  judge(frame->begun - deafness_.answerEnd() >= kMillisecond, end, "a frame within 1 ms of my last byte");
  if (heard.line.baud != 115200) return judge(false, end, "spoken to at " + std::to_string(heard.line.baud));
  const int before = disturbances_;
  dispatch(end, *frame, heard.line);
  if (disturbances_ == before) disturbed_ = false;  // not when the answer was tampered with
}

void Board::dispatch(Micros at, const HostFrame& frame, const Line& line) {
  const int command = frame.command();
  if (command == 0xF0) {
    judge(frame.wire == kWake, at, "wake frame");
    judge(line.parity == 'e', at, "wake frame without parity");
    ++wakes_;  // another session begins, perhaps for another model
    stage_ = 0;
    identity_.reset();
    return;
  }
  judge(line.parity == 'n', at, "a frame with parity");
  switch (command) {
    case 0x80:
      return onPoll(at, frame);
    case 0x0C:
      if (checkShort(at, frame, 0))
        answer(at + config_.turnaround, 0x0C, 0x0C, {static_cast<std::uint8_t>(config_.version)});
      return;
    case 0x0E:
      if (checkShort(at, frame, 0))
        answer(at + config_.turnaround, 0x0E, 0x0E,
               {static_cast<std::uint8_t>(config_.secondBank), static_cast<std::uint8_t>(config_.capacityKb)});
      return;
    case 0x84:
      if (checkShort(at, frame, 0)) onErase(at, 1);
      return;
    case 0x86:
      if (checkShort(at, frame, 0)) onErase(at, 2);
      return;
    case 0x00:
    case 0x30:
      return onWrite(at, frame);
    default:
      judge(false, at, "unknown command " + std::to_string(command));
  }
}

bool Board::checkShort(Micros at, const HostFrame& frame, int argument) {
  const auto p = frame.payload(true);
  if (p.size() != 6) {
    judge(false, at, "short frame: length " + std::to_string(frame.length()));
    return false;
  }
  const std::pair<int, std::pair<int, int>> told = {p[0], {p[4], p[5]}};
  if (!identity_) identity_ = told;
  judge(told == *identity_, at, "short frame: another model than before");
  judge(p[1] == argument, at, "short frame: argument " + std::to_string(p[1]));
  judge(p[2] == 0x36 && p[3] == 0x01, at, "short frame: fixed bytes");
  return true;
}

void Board::onPoll(Micros at, const HostFrame& frame) {
  ++polls_;
  if (!checkShort(at, frame, stage_ == 2 ? 0xF1 : 0xF3)) return;
  answer(at + config_.turnaround, 0x80, 0x80, {});
}

int Board::decimalVersion() const {
  const int high = config_.version >> 4, low = config_.version & 15;
  return high > 9 ? 0 : low > 9 ? high : high * 10 + low;
}

Board::Window Board::window() const {
  if (stage_ == 1) return {16384, decimalVersion() >= 17 ? 63487 : 62463};
  return config_.secondBank ? Window{16384, 35840} : Window{8192, 16383};
}

void Board::onErase(Micros at, int stage) {
  judge(stage == 1 || stage_ >= 1, at, "second stage before the first");
  if (stage == 2) judge(nextAddress_ == window().last + 1 || stage_ == 2, at, "second stage before the first is whole");
  stage_ = stage;
  if (stage == 1) tailWritten_ = false;
  Bytes& memory = stage == 2 && config_.secondBank ? memory_.second : memory_.main;
  const auto place = [&](std::int64_t address) { return memory.begin() + static_cast<std::ptrdiff_t>(address); };
  std::fill(place(stage == 1 ? 0 : window().first), stage == 1 ? memory.end() : place(window().last + 1), 0xFF);
  pages_[stage - 1] = 0;
  pageStart_ = -1;
  pageFailed_ = false;
  nextAddress_ = window().first;
  const Micros done = at + (stage == 1 ? config_.erase : config_.eraseTail);
  busyUntil_ = done;
  journal_.stated(at, done, "erases");
  schedule_.add(done,
                [this, stage](Micros when) { answer(when, stage == 1 ? 0x84 : 0x86, stage == 1 ? 0x84 : 0x86, {}); });
}

bool Board::checkWrite(Micros at, const HostFrame& frame) {
  const auto p = frame.payload(true);
  const auto wrong = [&](const std::string& text) { return judge(false, at, "write: " + text), false; };
  if (p.size() < 7) return wrong("length " + std::to_string(frame.length()));
  const std::int64_t address = p[2] * 256 + p[3], count = p[4] * 256 + p[5];
  if (p[0] != 0 || p[1] != 0) return wrong("address beyond 64 KB");
  if (count + 6 != static_cast<std::int64_t>(p.size()) || count > 128) return wrong("count " + std::to_string(count));
  if (stage_ == 0) return wrong("nothing was erased");
  if (address < window().first || address + count - 1 > window().last)
    return wrong("address " + std::to_string(address));
  judge(address / kPage == (address + count - 1) / kPage, at, "write: crosses a page at " + std::to_string(address));
  if (frame.command() == 0x30)
    judge(address == pageStart_, at, "write: repeated page at " + std::to_string(address) + " was not begun");
  else
    judge(address == nextAddress_ && !pageFailed_, at, "write: order, " + std::to_string(address));
  pageFailed_ = false;
  return true;
}

bool Board::pageFails(Micros at, int page) {
  if (!countDown(pageFailures_, page)) return false;
  pageFailed_ = true;
  const auto& all = config_.failsPages;
  const auto it = std::find_if(all.begin(), all.end(), [&](const PageFailure& f) { return f.page == page; });
  if (!it->silently) answer(at + config_.turnaround, 0x30, 0x81, {});
  return true;
}

bool Board::isLastStage() const {
  const bool oneStage = decimalVersion() == 15 || decimalVersion() >= 17;
  return stage_ == 2 || (oneStage && !config_.secondBank);
}

void Board::store(std::int64_t address, std::span<const std::uint8_t> data) {
  Bytes& memory = stage_ == 2 && config_.secondBank ? memory_.second : memory_.main;
  for (std::size_t i = 0; i < data.size(); ++i) memory[static_cast<std::size_t>(address) + i] &= data[i];  // flash
  nextAddress_ = address + static_cast<std::int64_t>(data.size());
  if (nextAddress_ % kPage == 0 || nextAddress_ == window().last + 1) ++pages_[stage_ - 1];
  if (nextAddress_ != window().last + 1) return;
  tailWritten_ = tailWritten_ || stage_ == 2;
  if (isLastStage()) ++loads_;
}

void Board::onWrite(Micros at, const HostFrame& frame) {
  if (!checkWrite(at, frame)) return;
  const auto p = frame.payload(true);
  const std::int64_t address = p[2] * 256 + p[3];
  if (address % kPage == 0) pageStart_ = address;
  if (address == pageStart_ && pageFails(at, static_cast<int>(address / kPage))) return;
  store(address, p.subspan(6));
  if (config_.diesAfterPages >= 0 && pagesDone() >= config_.diesAfterPages) return powerOff(at);
  const Micros done = at + config_.turnaround + static_cast<Micros>(p.size() - 6) * config_.writeByte;
  busyUntil_ = done;
  journal_.stated(at, done, "writes");
  schedule_.add(done, [this, request = frame.command()](Micros when) { answer(when, request, 0x80, {}); });
}

void Board::answer(Micros at, int request, int reply, const Bytes& payload) {
  if (countDown(config_.silentTo, request)) return;
  const int said = countDown(config_.wrongReplyTo, request) ? reply ^ 0x11 : reply;
  Bytes wire = buildCrcReply(static_cast<std::uint8_t>(said), payload);
  if (countDown(config_.badCrcTo, request)) wire[wire.size() - 2] ^= 0x40;
  if (!say) return;
  const Micros end = say(at, Line{115200, 'n'}, wire);
  busyUntil_ = std::max(busyUntil_, end);
  deafness_.answered(end, config_.deaf);
}

}  // namespace sim
