#include "sim/demo_firmware.h"

#include <algorithm>
#include <utility>

#include "sim/chip.h"
#include "sim/fault_text.h"

namespace sim {

namespace {

constexpr std::pair<int, std::string_view> kNumbers[] = {
    {0x0001, "Cedar-L10R"}, {0x0002, "Cedar-L20R"}, {0x0003, "Cedar-L38R"}, {0x0004, "Cedar-L40D"},
    {0x0005, "Cedar-L80D"}, {0x0006, "Cedar-LF8D"}, {0x4001, "Cedar-H10R"}, {0x4002, "Cedar-H20R"},
    {0x4003, "Cedar-H38R"}, {0x4004, "Cedar-H40D"}, {0x4005, "Cedar-H80D"}, {0x4006, "Cedar-HF8D"},
    {0x0051, "Cedar-B10R"}, {0x0052, "Cedar-B20R"}, {0x0053, "Cedar-B38R"}, {0x0054, "Cedar-B40D"},
    {0x0058, "Cedar-B80D"}, {0x0516, "Cedar-BF8D"}};

}  // namespace

int demoModelNumber(std::string_view model) {
  for (const auto& [number, name] : kNumbers)
    if (name == model) return number;
  return 0;
}

bool setDemoFault(DemoConfig& config, std::string_view name, std::string_view value) {
  if (name == "leavesOnFinish") return config.leavesOnFinish = true;
  if (name == "modelNumber") return toNumber(value, config.modelNumber, 16);
  if (name == "diesAfterBlocks") return toNumber(value, config.diesAfterBlocks);
  const auto counted = parseCounted(value, name == "failsBlock" ? 10 : 16);
  if (!counted) return false;
  if (name == "failsBlock") {
    config.failsBlocks.push_back({counted->what, counted->times, counted->silently});
    return true;
  }
  std::map<int, int>* const counts = name == "silent"   ? &config.silentTo
                                     : name == "badSum" ? &config.badSumTo
                                                        : nullptr;
  if (counts) (*counts)[counted->what] = counted->times;
  return counts != nullptr;
}

DemoFirmware::DemoFirmware(DemoConfig config)
    : config_(std::move(config)),
      flash_(static_cast<std::size_t>(config_.row->bootEnd) + 1, static_cast<std::size_t>(bootStartOf(*config_.row)),
             config_.seed) {
  if (config_.modelNumber == 0) config_.modelNumber = demoModelNumber(config_.row->name);
  for (const BlockFailure& failure : config_.failsBlocks) failuresLeft_[failure.block] = failure.times;
}

std::optional<Micros> DemoFirmware::nextDue() const {
  return schedule_.nextDue();
}

void DemoFirmware::advanceTo(Micros now) {
  schedule_.advanceTo(now);
}

void DemoFirmware::powerOn(Micros at) {
  schedule_.addPowerChange(at, [this](Micros when) {
    journal_.note(when, "power on");
    on_ = true;
    inRoutine_ = config_.command.empty();
    connected_ = erased_ = programmed_ = disturbed_ = false;
    lastBlock_ = blockStart_ = -1;
    busyUntil_ = when;
    heard_.clear();
  });
}

void DemoFirmware::powerOff(Micros at) {
  schedule_.addPowerChange(at, [this](Micros when) {
    journal_.note(when, "power off");
    on_ = false;
  });
}

void DemoFirmware::disturbed(Micros at) {
  disturbed_ = true;
  ++disturbances_;
  journal_.note(at, "the wire disturbs the conversation");
}

std::optional<Line> DemoFirmware::line() const {
  return inRoutine_ ? config_.downloadLine : config_.commandLine;
}

void DemoFirmware::judge(bool good, Micros at, const std::string& text) {
  if (good) return;
  if (disturbed_)
    journal_.note(at, "excused after a disturbance: " + text);
  else
    journal_.violation(at, text);
}

void DemoFirmware::hear(Micros end, const Heard& heard) {
  advanceTo(end);
  if (!on_ || end < busyUntil_) return;
  if (heard.damage == Damage::wrongLine) {
    if (!inRoutine_) return;
    if (end - lastHeard_ > config_.frameGap) wrongLine_.clear();
    lastHeard_ = end;
    wrongLine_.push_back(heard.meant);
    const bool frame = wrongLine_.size() == 2 && wrongLine_[0] == 0x5A && wrongLine_[1] == 0xA5;
    judge(!frame, end, "a frame at " + std::to_string(heard.line.baud) + "," + heard.line.parity);
    return;
  }
  if (!inRoutine_) return hearCommand(end, heard.byte);
  take(end, heard);
}

void DemoFirmware::hearCommand(Micros at, std::uint8_t byte) {
  heard_.push_back(byte);
  if (heard_.size() > config_.command.size()) heard_.erase(heard_.begin());
  if (heard_ != config_.command) return;
  ++commands_;
  inRoutine_ = true;
  heard_.clear();
  journal_.note(at, "the user's command: into the routine");
}

// A frame is 5A A5, a length of all its bytes, ..., a sum of two bytes, 16.
void DemoFirmware::take(Micros at, const Heard& heard) {
  if (!heard_.empty() && at - lastHeard_ > config_.frameGap) heard_.clear();
  lastHeard_ = at;
  if (heard_.empty()) damaged_ = false;
  heard_.push_back(heard.byte);
  damaged_ = damaged_ || heard.damage != Damage::none;
  if (heard_[0] != 0x5A || (heard_.size() == 2 && heard_[1] != 0xA5)) return heard_.clear();
  if (heard_.size() < 4) return;
  const std::size_t length = heard_[2] * 256U + heard_[3];
  if (length >= 8 && heard_.size() < length) return;
  const Bytes frame = std::exchange(heard_, {});
  const std::size_t end = frame.size();
  const bool sound = length >= 8 && frame[end - 1] == 0x16 &&
                     (sumOf(std::span(frame).first(end - 3)) & 0xFFFF) == frame[end - 3] * 256 + frame[end - 2];
  if (!sound) {
    if (!damaged_) judge(false, at, "frame with a bad length, sum or end");
    return;
  }
  const int before = disturbances_;
  dispatch(at, frame);
  if (disturbances_ == before) disturbed_ = false;  // not when the answer was tampered with
}

void DemoFirmware::dispatch(Micros at, const Bytes& frame) {
  const int command = frame[4];
  if (command != 0xB3 && command != 0xB4) judge(frame.size() == 8, at, "short frame: length");
  switch (command) {
    case 0xB0:
      connected_ = true;
      ++connects_;
      return answer(at + config_.turnaround, command, {});
    case 0xB1:
      return onFinish(at);
    case 0xB2:
      return onErase(at);
    case 0xB3:
    case 0xB4:
      return onData(at, frame);
    case 0xB5:
      judge(connected_, at, "model asked before the connection");
      return answer(
          at + config_.turnaround, command,
          {0, static_cast<std::uint8_t>(config_.modelNumber >> 8), static_cast<std::uint8_t>(config_.modelNumber)});
    default:
      judge(false, at, "unknown command " + std::to_string(command));
  }
}

void DemoFirmware::onErase(Micros at) {
  judge(connected_, at, "erase before the connection");
  flash_.erase(0, static_cast<std::int64_t>(flash_.protectedFrom()) - 1);
  ++erases_;
  erased_ = true;
  lastBlock_ = blockStart_ = -1;
  const Micros done = at + config_.erase;
  busyUntil_ = done;
  journal_.stated(at, done, "erases");
  schedule_.add(done, [this](Micros when) { answer(when, 0xB2, {}); });
}

bool DemoFirmware::checkData(Micros at, const Bytes& frame) {
  const auto number = [&](std::size_t from, std::size_t count) {
    std::int64_t value = 0;
    for (std::size_t i = 0; i < count; ++i) value = value * 256 + frame[from + i];
    return value;
  };
  const auto wrong = [&](const std::string& text) { return judge(false, at, "data frame: " + text), false; };
  if (frame.size() < 15) return wrong("length");
  const std::int64_t address = number(5, 4), count = number(9, 2);
  if (count + 14 != static_cast<std::int64_t>(frame.size()) || count > 128)
    return wrong("count " + std::to_string(count));
  if (address + count > static_cast<std::int64_t>(flash_.protectedFrom())) return wrong("into the boot block");
  judge(erased_, at, "data frame: nothing was erased");
  judge(address / 512 == (address + count - 1) / 512, at, "data frame: crosses a block");
  if (frame[4] == 0xB4)
    judge(address == blockStart_, at, "repeated frame begins no known block");
  else
    judge(address / 512 >= lastBlock_, at, "data frame: order");
  return true;
}

bool DemoFirmware::blockFails(Micros at, int block, std::int64_t address, int sum) {
  if (address != blockStart_ || !countDown(failuresLeft_, block)) return false;
  const auto& all = config_.failsBlocks;
  const auto it = std::find_if(all.begin(), all.end(), [&](const BlockFailure& f) { return f.block == block; });
  sum ^= 0xFF;
  if (!it->silently)
    answer(at + config_.turnaround, 0xB3, {static_cast<std::uint8_t>(sum >> 8), static_cast<std::uint8_t>(sum)});
  return true;
}

void DemoFirmware::onData(Micros at, const Bytes& frame) {
  if (!checkData(at, frame)) return;
  const std::int64_t address = ((frame[5] * 256LL + frame[6]) * 256 + frame[7]) * 256 + frame[8];
  const auto data = std::span(frame).subspan(11, frame.size() - 14);
  const int block = static_cast<int>(address / 512);
  if (frame[4] == 0xB4 || block != lastBlock_) blockStart_ = address;
  lastBlock_ = block;
  const int sum = sumOf(data) & 0xFFFF;
  if (blockFails(at, block, address, sum)) return;
  flash_.write(static_cast<std::size_t>(address), data);
  programmed_ = true;
  ++dataFrames_;
  if ((address + static_cast<std::int64_t>(data.size())) % 512 == 0) ++blocks_;
  if (config_.diesAfterBlocks >= 0 && blocks_ >= config_.diesAfterBlocks) return powerOff(at);
  const Micros done = at + config_.turnaround + static_cast<Micros>(data.size()) * config_.programByte;
  busyUntil_ = done;
  journal_.stated(at, done, "programs");
  schedule_.add(done, [this, sum, command = frame[4]](Micros when) {
    answer(when, command, {static_cast<std::uint8_t>(sum >> 8), static_cast<std::uint8_t>(sum)});
  });
}

void DemoFirmware::onFinish(Micros at) {
  ++finishes_;
  judge(programmed_ || !erased_, at, "finish without data");
  if (programmed_) ++rounds_;
  programmed_ = erased_ = connected_ = false;
  journal_.note(at, "finished");
  answer(at + config_.turnaround, 0xB1, {});
  // The host says it twice; the new program starts a little later.
  if (config_.leavesOnFinish) schedule_.add(at + 50 * kMillisecond, [this](Micros) { inRoutine_ = false; });
}

void DemoFirmware::answer(Micros at, int command, const Bytes& body) {
  if (countDown(config_.silentTo, command)) return;
  Bytes wire = {0x5A, 0xA5, 0, static_cast<std::uint8_t>(body.size() + 8), static_cast<std::uint8_t>(command)};
  wire.insert(wire.end(), body.begin(), body.end());
  int sum = sumOf(wire) & 0xFFFF;
  if (countDown(config_.badSumTo, command)) sum ^= 0x0101;
  wire.insert(wire.end(), {static_cast<std::uint8_t>(sum >> 8), static_cast<std::uint8_t>(sum), 0x16});
  if (say) busyUntil_ = std::max(busyUntil_, say(at, config_.downloadLine, wire));
}

}  // namespace sim
