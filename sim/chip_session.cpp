// The commands of a session and the short frames among them.
#include "sim/chip.h"

namespace sim {

void Chip::dispatch(Micros at, const HostFrame& frame) {
  const int command = frame.command();
  const std::size_t size = frame.payload(row().frame2).size();
  if (command != 0x65) judgePulseCount(at);
  switch (command) {
    case 0x00:
    case 0x30:
      return onData(at, frame);
    case 0x50:
      return onStatusRead(at, frame);
    case 0x65:
      return onMeasure(at, frame);
    case 0x69:
      return onFinish(at, frame);
    case 0x80:
      return onPing(at, frame);
    case 0x82:
      judge(size == 0, at, "0x82 with a payload");
      ++releases_;
      return leaveBoot(at, "released by the host");
    case 0x84:
      return onErase(at, frame);
    case 0x86:
      return onWatchdog(at, frame);
    case 0x8A:
      if (fixedLink_ && fresh_) sendStatus(at + config_.times.turnaround, 0x8A);
      return;
    case 0x8D:
      return onOptions(at, frame);
    case 0x8E:
      return size == 11 ? onRcBaud(at, frame) : onBaudChange(at, frame);
    case 0x8F:
      return onBaudTest(at, frame);
    default:
      judge(false, at, "unknown command " + std::to_string(command));
  }
}

void Chip::checkGeneric(Micros at, const HostFrame& frame, int argument, bool identityCounts) {
  const auto p = frame.payload(row().frame2);
  const std::string name = "generic frame " + std::to_string(frame.command());
  if (p.size() != 6) return judge(false, at, name + ": length " + std::to_string(frame.length()));
  judge(p[1] == argument, at, name + ": argument");
  judge(p[2] == 0x36 && p[3] == 0x01, at, name + ": fixed bytes");
  if (!identityCounts || letter_ == 'F') return;
  const std::string code = reportedCode();
  const int high = hexDigit(code[0]) * 16 + hexDigit(code[1]);
  const int low = code.size() == 4 ? hexDigit(code[2]) * 16 + hexDigit(code[3]) : 0xFF;
  judge(p[0] == family(), at, name + ": family " + std::to_string(p[0]));
  judge(p[4] == high && p[5] == low, at, name + ": model code");
}

void Chip::onPing(Micros at, const HostFrame& frame) {
  // The operator may have asked for a look at a chip with another model selected, so the identity is not held against
  // him.
  checkGeneric(at, frame, 0, false);
  judgeFair(!row().extSession, at, "ping in the later session");
  reply(at + config_.times.turnaround, 0x80, statusPayload());
}

void Chip::onStatusRead(Micros at, const HostFrame& frame) {
  const Micros start = at + config_.times.turnaround;
  if (frame.payload(row().frame2).empty()) {
    if (!config_.faults.silentStatusRead) reply(start, 0x50, optionsPayload());
    return;
  }
  checkGeneric(at, frame, 0, true);
  judge(row().extSession, at, "second-stage 0x50 outside the later session");
  if (config_.faults.silentStage) return;
  reply(start, config_.faults.wrongStageReply ? 0x50 : 0x8F, optionsPayload());
}

void Chip::onWatchdog(Micros at, const HostFrame& frame) {
  const auto p = frame.payload(row().frame2);
  if (p.size() != 1) return judge(false, at, "0x86: length " + std::to_string(frame.length()));
  judge((p[0] >> 4) <= 4 && (p[0] & 15) <= 7, at, "0x86: no such pin");
  watchdogPin_ = p[0];
  reply(at + config_.times.turnaround, 0x86, p);
}

}  // namespace sim
