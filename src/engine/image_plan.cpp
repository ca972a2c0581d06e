#include "engine/image_plan.h"

#include <algorithm>
#include <initializer_list>

#include "engine/family_rules.h"

namespace kvr::engine {
namespace {

bool isOneOf(std::string_view name, std::initializer_list<std::string_view> names) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

void push24(Bytes& out, std::int32_t value) {
  for (const int shift : {16, 8, 0}) out.push_back(static_cast<std::uint8_t>(value >> shift));
}

}  // namespace

ImageFit fitImages(const TargetInfo& target, std::int32_t codeEnd, bool clearUnusedChosen) {
  const std::string& letter = target.steppingLetter;
  const std::int32_t apEnd = target.targetRecord.apEnd;
  ImageFit fit;
  ImagePlan& plan = fit.plan;
  plan.planDataStart = target.targetRecord.dataStart;
  plan.planDataEnd = target.targetRecord.dataEnd;
  const bool oldElm = letter == "D", oldFir = letter == "E" && target.versionNumber() <= 5.0;
  if (oldElm || oldFir) {
    plan.planDataEnd = oldElm ? 0x13FF : 0x2FFF;
    fit.tooBig = codeEnd > plan.planDataEnd;
  } else if (letter == "E") {
    plan.planDataStart = apEnd <= 4096 ? 4096 : apEnd <= 8192 ? 8192 : apEnd <= 12288 ? 12288 : apEnd + 1;
    plan.planDataEnd = 0x6FFF;
  }
  plan.planUnusedStart = std::min(codeEnd, apEnd) + 1;
  plan.planSpills = codeEnd > apEnd;
  plan.planSpillEnd = plan.planSpills ? std::min(codeEnd, plan.planDataEnd) : plan.planDataEnd + 1;
  plan.planClearUnused = letter >= "C" && codeEnd < apEnd && (apEnd < 0x3800 || clearUnusedChosen);
  return fit;
}

int eraseSectorCount(const TargetInfo& target, std::string_view name, std::int32_t codeEnd) {
  const std::string& letter = target.steppingLetter;
  if (letter == "A" || letter == "B") {
    if (isOneOf(name, {"Birch-LFCA", "Birch-LFCZ"})) return 124;
    if (name == "Birch-L80A") return 64;
    if (name == "Birch-L40A") return 32;
    if (name == "Birch-L20A") return 16;
    return 255;
  }
  if (letter != "C") return 255;
  if (target.version10() >= 28) return std::min(codeEnd / 512 + 1, 255);
  if (isOneOf(name, {"Cedar-H10R", "Cedar-L10R", "Cedar-H20R", "Cedar-L20R", "Cedar-H38R", "Cedar-L38R"})) return 30;
  if (isOneOf(name, {"Cedar-H40D", "Cedar-L40D", "Cedar-H50D", "Cedar-L50D", "Cedar-H80D", "Cedar-L80D", "Cedar-HF4D",
                     "Cedar-LF4D", "Cedar-HF8D", "Cedar-LF8D"}))
    return 126;
  return 255;
}

AddressRange eraseRange(const TargetInfo& target, const catalogue::McuRecord& selected, const ImagePlan& plan,
                        const options::OptionBytes& reported) {
  if (target.steppingLetter < "D") return {0x10000, 0x10000};
  AddressRange range = {plan.planDataStart, plan.planDataStart};
  if (plan.planClearUnused) {
    const bool late = catalogue::isLateFamily(selected.family);
    const bool clearsData = late ? !(reported[1] & 8) : !(reported[8] & 2);
    range.first = plan.planUnusedStart;
    if (clearsData) range.last = plan.planDataEnd;
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
  if (target.steppingLetter < "D") {
    payload.insert(payload.end(), 6, 0x33);
  } else {
    push24(payload, range.first);
    push24(payload, range.last);
  }
  if (target.steppingLetter == "G" || target.version10() >= 57) {
    payload.insert(payload.end(), 11, 0x00);
    const int countdown = hasTrimmedOscillator(selected.family) ? 34 : 115;
    for (int i = 0; i < countdown; ++i) payload.push_back(static_cast<std::uint8_t>(0x80 - i));
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
