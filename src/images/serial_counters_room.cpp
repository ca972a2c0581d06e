#include "images/serial_counters_room.h"

#include <algorithm>

#include "images/range_rules.h"
#include "platform/text.h"

namespace kvr::images {
namespace {

constexpr std::size_t kNextBox = 2;
constexpr std::size_t kRadixKey = 4;

// The five settings of a counter as its controls show them.
std::array<std::string, 5> settingsOf(const ImageSlot& slot) {
  std::array<std::string, 5> texts;
  for (std::size_t i = 0; i < kRadixKey; ++i) texts[i] = slot.counterTexts[i].text();
  texts[kRadixKey] = std::to_string(static_cast<int>(slot.counter.radix));
  return texts;
}

bool holds(const ImageBuffer& buffer, std::int32_t first, const std::vector<std::uint8_t>& bytes) {
  return std::all_of(bytes.begin(), bytes.end(), [&](std::uint8_t byte) { return buffer.at(first++) == byte; });
}

void disarm(ImageSlot& slot) {
  slot.counter.armed = false;
  slot.claim.reset();
}

}  // namespace

SerialCounters::SerialCounters(platform::World& world, platform::Activity& activity,
                               const catalogue::SelectedModel& selected, ImageSlots& slots, BufferViews& views)
    : world_(world), selected_(selected), slots_(slots), views_(views) {
  for (ImageSlot* slot : slots_.both())
    slot->counterBox.onClick = [this, slot, &activity] {
      if (const auto running = activity.begin()) follow(*slot);
    };
}

void SerialCounters::followBox(ImageKind kind) {
  follow(slots_.of(kind));
}

void SerialCounters::follow(ImageSlot& slot) {
  enable(slot);
  disarm(slot);
  if (!slot.counterBox.value()) return;
  readBoxes(slot);
  if (const std::string fault = checkAutoRange(slot.counter, selected_.record); !fault.empty())
    return warn(slot, fault);
  if (!claim(slot)) return;
  slot.counter.armed = true;
  if (const auto saved = save(slot); !saved) warn(slot, "The serial number could not be saved: " + saved.error);
  // What was wrong with the value has been said; the start of a run looks again and refuses.
  const bool written = writeValue(slot);
  if (slot.kind == ImageKind::Data && written) slot.buffer.loaded = true;
  views_.showRange(slot);
  showField(slot);
}

void SerialCounters::readBoxes(ImageSlot& slot) {
  slot.counterTexts[0].setText(platform::upper(slot.counterTexts[0].text()));
  CounterTexts texts;
  for (std::size_t i = 0; i < texts.size(); ++i) texts[i] = slot.counterTexts[i].text();
  takeTexts(slot.counter, texts);
  slot.counter.radix = Radix::Hex;
  for (const Radix radix : {Radix::Bcd, Radix::Ascii})
    if (slot.radix[static_cast<std::size_t>(radix)].value()) slot.counter.radix = radix;
}

// False: another window counts with it; the user has been told.
bool SerialCounters::claim(ImageSlot& slot) {
  slot.claim = world_.store.claim(slot.section);
  if (slot.claim) {
    catchUp(slot);
    return true;
  }
  warn(slot, "The serial number cannot be used: another window counts with it, or the settings cannot be written.");
  return false;
}

// What another window gave out since this one last looked is not given out again. A number that the user has typed here
// is meant as it is.
void SerialCounters::catchUp(ImageSlot& slot) {
  platform::TextBox& box = slot.counterTexts[kNextBox];
  if (!slot.saved || box.text() != (*slot.saved)[kNextBox]) return;
  const auto inFile = [&](std::size_t i) {
    return world_.store.fresh(slot.section, kCounterKeys[i].key).value_or((*slot.saved)[i]);
  };
  const std::string next = inFile(kNextBox);
  if (next == box.text() || autoAddress(inFile(0)) != slot.counter.address) return;
  (*slot.saved)[kNextBox] = next;
  box.setText(next);
  readBoxes(slot);
  warn(slot, "Another window has counted on. The next value is " + next + ".");
}

// False: the next value cannot be written; the user has been told.
bool SerialCounters::writeValue(ImageSlot& slot) {
  const AutoValue value = autoValue(slot.counter);
  if (!value.fault.empty()) {
    warn(slot, value.fault);
    return false;
  }
  slot.buffer.edit(slot.counter.field().first, value.bytes);
  return true;
}

void SerialCounters::showField(ImageSlot& slot) {
  slot.bar.setValue((slot.counter.address - slot.buffer.rangeStart) / 16 - 3);
  views_.redraw(slot);
}

void SerialCounters::loadSettings() {
  for (ImageSlot* slot : slots_.both()) {
    std::array<std::string, 5> texts;
    for (std::size_t i = 0; i < texts.size(); ++i)
      texts[i] = world_.store.getOr(slot->section, kCounterKeys[i].key, kCounterKeys[i].fallback);
    for (std::size_t i = 0; i < kRadixKey; ++i) slot->counterTexts[i].setText(texts[i]);
    const int radix = platform::wholeOf(texts[kRadixKey]);
    if (radix >= 0 && radix < 3) slot->radix[static_cast<std::size_t>(radix)].setValue(true);
    slot->saved = texts;
    readBoxes(*slot);
  }
}

// Writes what has changed in this window: the file may hold what another one has written. A number that has gone into a
// chip must be on the disk before the next chip comes.
platform::FileResult SerialCounters::save(ImageSlot& slot) {
  const auto texts = settingsOf(slot);
  for (std::size_t i = 0; i < texts.size(); ++i)
    if (!slot.saved || (*slot.saved)[i] != texts[i]) world_.store.set(slot.section, kCounterKeys[i].key, texts[i]);
  auto result = world_.store.flush();
  if (result) slot.saved = texts;
  return result;
}

bool SerialCounters::armForRun() {
  return armOne(slots_.code) && armOne(slots_.data);
}

bool SerialCounters::armOne(ImageSlot& slot) {
  if (!slot.counter.armed || !slot.counterBox.value()) follow(slot);  // the box is what counts, however it was switched
  if (!slot.counterBox.value()) return true;
  if (!slot.counter.armed) return false;
  if (slot.kind == ImageKind::Data && !catalogue::dataFileIsProgrammed(selected_.record)) {
    warn(slot, std::string(catalogue::kDataFileNotProgrammed));
    return false;
  }
  const AutoValue value = autoValue(slot.counter);
  if (value.fault.empty() && holds(slot.buffer, slot.counter.field().first, value.bytes)) return true;
  // The image does not hold the number (edited over, or the value was refused when the box was switched on).
  if (!writeValue(slot)) return false;
  if (slot.kind == ImageKind::Data) slot.buffer.loaded = true;
  views_.showRange(slot);
  return true;
}

bool SerialCounters::advanceAfterSuccess() {
  const bool codeFine = advanceOne(slots_.code);
  return advanceOne(slots_.data) && codeFine;
}

bool SerialCounters::advanceOne(ImageSlot& slot) {
  if (!slot.counter.armed) return true;
  slot.counterTexts[kNextBox].setText(advancedNext(slot.counter));
  readBoxes(slot);
  const bool written = writeValue(slot);
  views_.redraw(slot);
  const auto saved = save(slot);
  if (!saved) warn(slot, "The next serial number could not be saved, so no further chip is programmed: " + saved.error);
  return written && saved;
}

std::string SerialCounters::numberInHand() const {
  const AutoIncrement& code = slots_.code.counter;
  const AutoIncrement& data = slots_.data.counter;
  const std::string both = code.armed && data.armed ? "/" : "";
  return (code.armed ? code.next : "") + both + (data.armed ? data.next : "");
}

std::vector<AutoIncrement> SerialCounters::switchedOn() const {
  std::vector<AutoIncrement> on;
  for (const ImageSlot* slot : slots_.both())
    if (slot->counterBox.value()) on.push_back(slot->counter);
  return on;
}

void SerialCounters::forgetArmed() {
  for (ImageSlot* slot : slots_.both()) disarm(*slot);
}

void SerialCounters::enableControls(bool codeOn, bool dataOn) {
  slots_.code.counterAllowed = codeOn;
  slots_.data.counterAllowed = dataOn;
  for (ImageSlot* slot : slots_.both()) enable(*slot);
}

void SerialCounters::enable(ImageSlot& slot) {
  slot.counterBox.setEnabled(slot.counterAllowed);
  const bool open = slot.counterAllowed && !slot.counterBox.value();
  for (std::size_t i = 0; i < slot.counterTexts.size(); ++i) slot.counterTexts[i].setEnabled(open);
  for (std::size_t i = 0; i < slot.radix.size(); ++i) slot.radix[i].setEnabled(open);
}

void SerialCounters::warn(const ImageSlot& slot, const std::string& text) {
  world_.dialogs.message(slot.counterTitle, text, platform::BoxIcon::Warning);
}

}  // namespace kvr::images
