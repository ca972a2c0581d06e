#include "images/serial_counters.h"

#include <algorithm>

#include "platform/text.h"

namespace kvr::images {

namespace {
int whole16(const std::string& text) {
  return std::clamp(platform::wholeOf(text), -32768, 32767);
}
}  // namespace

SerialCounters::SerialCounters(platform::World& world, const catalogue::SelectedModel& selected, ImagePanel& panel,
                               ImageState& state, BufferViews& views)
    : world_(world), selected_(selected), panel_(panel), state_(state), views_(views) {
  code.kind = "AP_AUTO_INCREASE";
  data.kind = "Data_Auto_Increase";
  panel_.cheAuto_Increase.onClick = [this] { runAlone(alone, [this] { cheAuto_Increase_Click(); }); };
  panel_.cheData_Auto_Increase.onClick = [this] { runAlone(alone, [this] { cheData_Auto_Increase_Click(); }); };
  views_.readCounter = [this](int view) -> const AutoIncrement& {
    readAutoControls();
    return view == 0 ? code : data;
  };
  views_.counterOn = [this](int view) { return view == 0 ? panel_.cheAuto_Increase.value() : data.armed; };
}

SerialCounters::Side SerialCounters::side(const AutoIncrement& record) {
  if (record.isCode())
    return {code,
            panel_.cheAuto_Increase,
            panel_.texAuto_Increase,
            panel_.optAuto_Increase,
            state_.CodeBuffer,
            0,
            "Auto_Increase",
            "Set Program Automatic Increment",
            codeAllowed_};
  return {data,
          panel_.cheData_Auto_Increase,
          panel_.texData_Auto_Increase,
          panel_.optData_Auto_Increase,
          state_.EepromBuffer,
          1,
          "Data_Auto_Increase",
          "Set EEPROM Automatic Increment",
          dataAllowed_};
}

void SerialCounters::cheAuto_Increase_Click() {
  click(code);
}
void SerialCounters::cheData_Auto_Increase_Click() {
  click(data);
}

void SerialCounters::click(AutoIncrement& record) {
  const Side at = side(record);
  enable(record);
  record.armed = false;
  if (!at.check.value()) return;
  readAutoControls();
  if (!checkAutoRange(record)) return;
  saveAutoSettings();
  // What was wrong with the value has been said; the start of a run looks again and refuses.
  const bool written = writeAutoValue(record);
  if (!record.isCode() && written) state_.EepromBuffer.loaded = true;
  views_.showRange(at.view, record);
  showAutoField(record);
}

void SerialCounters::readAutoControls() {
  read(code);
  read(data);
}

void SerialCounters::read(AutoIncrement& record) {
  const Side at = side(record);
  at.boxes[0].setText(platform::upper(at.boxes[0].text()));
  record.address = autoAddress(at.boxes[0].text());
  record.bytes = whole16(at.boxes[1].text());
  record.next = at.boxes[2].trimmed();
  record.step = whole16(at.boxes[3].text());
  record.radix = kRadixHex;
  for (int i = 0; i < 3; ++i)
    if (at.radix[static_cast<std::size_t>(i)].value()) record.radix = i;
}

bool SerialCounters::checkAutoRange(AutoIncrement& record) {
  const std::string fault = images::checkAutoRange(record, selected_.record);
  record.armed = fault.empty();
  if (!record.armed) world_.dialogs.message(side(record).title, fault, platform::BoxIcon::Warning);
  return record.armed;
}

bool SerialCounters::writeAutoValue(AutoIncrement& record) {
  const Side at = side(record);
  const AutoValue value = autoValue(record);
  if (!value.fault.empty()) {
    world_.dialogs.message(at.title, value.fault, platform::BoxIcon::Warning);
    return false;
  }
  at.buffer.edit(record.field().first, value.bytes);
  return true;
}

void SerialCounters::advanceIncrement(AutoIncrement& record) {
  if (record.armed) side(record).boxes[2].setText(advancedNext(record));
  readAutoControls();
}

void SerialCounters::showAutoField(AutoIncrement& record) {
  const Side at = side(record);
  panel_.vscFile[static_cast<std::size_t>(at.view)].setValue((record.address - at.buffer.rangeStart) / 16 - 3);
  views_.vscFile_Change(at.view);
}

void SerialCounters::loadAutoSettings() {
  for (const auto* record : {&code, &data}) {
    const Side at = side(*record);
    at.boxes[0].setText(world_.store.getOr(at.section, "address", "FFFF"));
    at.boxes[1].setText(world_.store.getOr(at.section, "Length", "8"));
    at.boxes[2].setText(world_.store.getOr(at.section, "next_value", "0000"));
    at.boxes[3].setText(world_.store.getOr(at.section, "Increase", "1"));
    const int radix = platform::wholeOf(world_.store.getOr(at.section, "numeral_system", "1"));
    if (radix >= kRadixHex && radix <= kRadixAscii) at.radix[static_cast<std::size_t>(radix)].setValue(true);
  }
  readAutoControls();
}

void SerialCounters::saveAutoSettings() {
  for (const auto* record : {&code, &data}) {
    const Side at = side(*record);
    world_.store.set(at.section, "address", at.boxes[0].text());
    world_.store.set(at.section, "Length", at.boxes[1].text());
    world_.store.set(at.section, "next_value", at.boxes[2].text());
    world_.store.set(at.section, "Increase", at.boxes[3].text());
    world_.store.set(at.section, "numeral_system", std::to_string(record->radix));
  }
  // A number that has gone into a chip must be on the disk before the next chip comes.
  if (const auto saved = world_.store.flush(); !saved)
    world_.dialogs.message(platform::kTitle, "The serial number counters could not be saved: " + saved.error,
                           platform::BoxIcon::Warning);
}

bool SerialCounters::armForRun() {
  return armOne(code) && armOne(data);
}

bool SerialCounters::armOne(AutoIncrement& record) {
  const Side at = side(record);
  if (!record.armed || !at.check.value()) click(record);  // the box is what counts, however it was switched
  if (!at.check.value()) return true;
  if (!record.armed) return false;
  const AutoValue value = autoValue(record);
  std::int32_t place = record.field().first;
  if (value.fault.empty() && std::all_of(value.bytes.begin(), value.bytes.end(),
                                         [&](std::uint8_t byte) { return at.buffer.at(place++) == byte; }))
    return true;
  // The image does not hold the number (edited over, or the value was refused when the box was switched on).
  if (!writeAutoValue(record)) return false;
  if (!record.isCode()) state_.EepromBuffer.loaded = true;
  views_.showRange(at.view, record);
  return true;
}

bool SerialCounters::advanceAfterSuccess() {
  const bool codeFine = advanceOne(code);
  return advanceOne(data) && codeFine;
}

bool SerialCounters::advanceOne(AutoIncrement& record) {
  if (!record.armed) return true;
  advanceIncrement(record);
  const bool written = writeAutoValue(record);
  views_.vscFile_Change(side(record).view);
  saveAutoSettings();
  return written;
}

std::string SerialCounters::numberInHand() const {
  const std::string both = code.armed && data.armed ? "/" : "";
  return (code.armed ? code.next : "") + both + (data.armed ? data.next : "");
}

void SerialCounters::enableControls(bool codeOn, bool dataOn) {
  codeAllowed_ = codeOn;
  dataAllowed_ = dataOn;
  enable(code);
  enable(data);
}

void SerialCounters::enable(AutoIncrement& record) {
  const Side at = side(record);
  at.check.setEnabled(at.allowed);
  const bool open = at.allowed && !at.check.value();
  for (std::size_t i = 0; i < 4; ++i) at.boxes[i].setEnabled(open);
  for (std::size_t i = 0; i < 3; ++i) at.radix[i].setEnabled(open);
}

}  // namespace kvr::images
