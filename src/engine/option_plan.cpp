#include "engine/option_plan.h"

#include <algorithm>
#include <initializer_list>

#include "platform/text.h"

namespace kvr::engine {

using catalogue::isLong;
using catalogue::OptionLayout;

namespace {

constexpr std::uint8_t kWriteOptions = 0x8D;

void pushClock(Bytes& out, double clockHz) {
  const auto clock = static_cast<std::uint32_t>(platform::roundEven(clockHz));
  for (const int shift : {24, 16, 8, 0}) out.push_back(static_cast<std::uint8_t>(clock >> shift));
}

bool agree(const options::OptionSet& set, std::initializer_list<std::size_t> which, std::uint8_t ignoredOfByte1 = 0) {
  return std::all_of(which.begin(), which.end(), [&](std::size_t i) {
    const int ignored = i == 1 ? ignoredOfByte1 : 0;
    return (set.wanted[i] | ignored) == (set.reported[i] | ignored);
  });
}

}  // namespace

std::uint8_t alderOptionByte(const catalogue::McuRecord& record, bool doubleSpeed) {
  return static_cast<std::uint8_t>((record.quirks.smallOptionByte ? 32 : 64) + (doubleSpeed ? 8 : 0));
}

Bytes buildCedarOptionFrame(const options::OptionBytes& wanted, ReloadBytes reload, SumForm form) {
  const Bytes payload = {wanted[1], reload.high, reload.low, wanted[8]};
  return buildFrame(kWriteOptions, payload, form);
}

bool cedarNeedsNoWrite(const options::OptionSet& options) {
  const std::uint8_t byte8 = options.wanted[8];
  return (byte8 & ~0x10) && (byte8 & ~0x08) && options.reported[1] == options.wanted[1];
}

Bytes buildLaterOptionFrame(OptionLayout layout, const options::OptionBytes& wanted, double clockHz, SumForm form) {
  Bytes payload;
  if (isLong(layout)) {
    payload.assign(wanted.begin(), wanted.begin() + 16);
    pushClock(payload, clockHz);
    return buildFrame(kWriteOptions, payload, SumForm::TwoBytes);
  }
  payload = {wanted[2], wanted[3], wanted[8], wanted[10], layout == OptionLayout::ShortHazel ? wanted[0] : wanted[11]};
  pushClock(payload, clockHz);
  payload.insert(payload.end(), wanted.begin(), wanted.begin() + 16);
  pushClock(payload, clockHz);
  payload.insert(payload.end(), 3, 0xFF);
  return buildFrame(kWriteOptions, payload, form);
}

Bytes buildRowanOptionFrame(const options::OptionBytes& wanted, double clockHz, SumForm form) {
  Bytes payload = {wanted[0], wanted[3], wanted[4], wanted[8], wanted[10], wanted[11]};
  if (wanted[3] & 2) {
    payload.insert(payload.end(), 4, 0xFF);
  } else {
    pushClock(payload, clockHz);
  }
  return buildFrame(kWriteOptions, payload, form);
}

bool optionsAgree(OptionLayout layout, bool laterOrder, Moment moment, const options::OptionSet& set) {
  const bool before = moment == Moment::BeforeWrite;
  if (layout == OptionLayout::Rowan) return rowanOptionsAgree(set);
  if (isLong(layout)) return agree(set, {0, 1, 2, 3, 8, 9}, before ? 0 : 0x88);
  if (laterOrder) return agree(set, {0, 1, 2, 3, 8, 9});
  return agree(set, {2, 3, 8, 10, 11}) && (!before || layout != OptionLayout::ShortHazel || agree(set, {0}));
}

bool allOptionsAgree(const options::OptionSet& set) {
  return std::equal(set.wanted.begin(), set.wanted.begin() + 16, set.reported.begin());
}

bool rowanOptionsAgree(const options::OptionSet& set) {
  return agree(set, {0, 3, 4, 8, 10, 11});
}

bool runsFromExternalClock(OptionLayout layout, int optionOrder, const options::OptionSet& set) {
  const bool external = set.reported[isLong(layout) ? 1 : 2] & 2;
  return external && !(optionOrder > 0 && set.reported[0] != set.wanted[0]);
}

}  // namespace kvr::engine
