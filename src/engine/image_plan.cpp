#include "engine/image_plan.h"

#include <algorithm>

namespace kvr::engine {

using catalogue::FirmwareVersion;

namespace {

void push24(Bytes& out, std::int32_t value) {
  for (const int shift : {16, 8, 0}) out.push_back(static_cast<std::uint8_t>(value >> shift));
}

}  // namespace

ImageFit fitImages(const TargetInfo& target, std::int32_t codeEnd, bool clearUnusedChosen) {
  const std::int32_t apEnd = target.targetRecord.apEnd;
  ImageFit fit;
  ImagePlan& plan = fit.plan;
  plan.made = true;
  plan.planDataStart = target.targetRecord.dataStart;
  plan.planDataEnd = target.targetRecord.dataEnd;
  const bool oldElm = target.stepping == 'D';
  const bool oldFir = target.stepping == 'E' && target.firmware <= FirmwareVersion{5, 0};
  if (oldElm || oldFir) {
    plan.planDataEnd = oldElm ? 0x13FF : 0x2FFF;
    fit.tooBig = codeEnd > plan.planDataEnd;
  } else if (target.stepping == 'E') {
    plan.planDataStart = apEnd <= 4096 ? 4096 : apEnd <= 8192 ? 8192 : apEnd <= 12288 ? 12288 : apEnd + 1;
    plan.planDataEnd = 0x6FFF;
  }
  plan.planUnusedStart = std::min(codeEnd, apEnd) + 1;
  plan.planSpills = codeEnd > apEnd;
  plan.planSpillEnd = plan.planSpills ? std::min(codeEnd, plan.planDataEnd) : plan.planDataEnd + 1;
  plan.planClearUnused = target.stepping >= 'C' && codeEnd < apEnd && (apEnd < 0x3800 || clearUnusedChosen);
  return fit;
}

int eraseSectorCount(const TargetInfo& target, const catalogue::McuRecord& selected, std::int32_t codeEnd) {
  const bool counts = target.stepping == 'C' && target.firmware >= FirmwareVersion{2, 8};
  if (counts) return std::min(codeEnd / 512 + 1, 255);
  return target.stepping.firstGeneration() ? selected.quirks.eraseSectors : 255;
}

AddressRange eraseRange(const TargetInfo& target, const catalogue::McuRecord& selected, const ImagePlan& plan,
                        const options::OptionBytes& reported) {
  if (target.stepping.firstGeneration()) return {0x10000, 0x10000};
  AddressRange range = {plan.planDataStart, plan.planDataStart};
  if (plan.planClearUnused) {
    range.first = plan.planUnusedStart;
    if (traitsOf(selected).keepsData.clearIn(reported)) range.last = plan.planDataEnd;
  } else if (plan.planSpills) {
    range.first = range.last = plan.planSpillEnd + 1;
    if (!(reported[8] & 2)) range.last = plan.planDataEnd;
  }
  if (selected.topBlockFree) range.last = selected.apEnd > 0x4000 ? range.first : selected.apEnd;
  if (range.first > plan.planDataEnd) range.first = plan.planDataEnd + 1;
  range.last = std::max(range.last, range.first);
  return range;
}

Bytes buildEraseFrame(const TargetInfo& target, const catalogue::McuRecord& selected, int sectorCount,
                      AddressRange range) {
  Bytes payload = {static_cast<std::uint8_t>(sectorCount)};
  if (target.stepping.firstGeneration()) {
    payload.insert(payload.end(), 6, 0x33);
  } else {
    push24(payload, range.first);
    push24(payload, range.last);
  }
  if (target.stepping == 'G' || target.firmware >= FirmwareVersion{5, 7}) {
    payload.insert(payload.end(), 11, 0x00);
    for (int i = 0; i < traitsOf(selected).eraseCountdown; ++i) payload.push_back(static_cast<std::uint8_t>(0x80 - i));
  }
  return buildFrame(0x84, payload, sumFormOf(selected));
}

int dataFrameLimitMs(double clockHz, int baud) {
  const int byClock = clockHz < 3e6    ? 4000
                      : clockHz < 4e6  ? 3000
                      : clockHz < 6e6  ? 2000
                      : clockHz < 8e6  ? 1500
                      : clockHz < 12e6 ? 1200
                                       : 1000;
  const int byBaud = baud <= 1200 ? 5000 : baud <= 2400 ? 3000 : baud <= 4800 ? 2000 : baud <= 9600 ? 1500 : 0;
  return std::max(byClock, byBaud);
}

}  // namespace kvr::engine
