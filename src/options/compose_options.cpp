#include "options/compose_options.h"

#include <array>

#include "options/option_table.h"

namespace kvr::options {

using catalogue::FamilyTraits;

namespace {

constexpr std::uint8_t byteOf(int value) {
  return static_cast<std::uint8_t>(value & 0xFF);
}

void putBit(OptionBytes& bytes, const BitPlace& place) {
  auto& byte = bytes[static_cast<std::size_t>(place.byte)];
  const int mask = 1 << place.bit;
  byte = byteOf(place.chosen == 1 ? byte | mask : byte & ~mask);
}

// Replaces the bits of `mask` by those of `value`.
void putField(std::uint8_t& byte, int mask, int value) {
  byte = byteOf((byte & ~mask) | (value & mask));
}

// The place of `text` in `choices`; the last place when it is not there.
template <std::size_t N>
int placeOrLast(const std::array<std::string_view, N>& choices, std::string_view text) {
  for (std::size_t i = 0; i < N; ++i)
    if (choices[i] == text) return static_cast<int>(i);
  return static_cast<int>(N) - 1;
}

int prescalerBits(std::string_view text) {
  return placeOrLast(kPrescalers, text);
}

int wakeUpBits(std::string_view text) {
  return placeOrLast(kWakeUpDelays, text);
}

// The list runs from the highest threshold, which is value 4, downwards.
int lowVoltageBits(int listIndex) {
  const int n = listIndex + 3;
  return n >= 0 && n <= 7 ? 7 - n : 5;
}

void putFields(OptionBytes& bytes, const PanelValues& values, std::optional<RcTrim> trim) {
  const FamilyTraits& traits = catalogue::traitsOf(values.family);
  if (traits.watchdogByte >= 0)
    putField(bytes[static_cast<std::size_t>(traits.watchdogByte)], 0x07, prescalerBits(values.prescaler));
  if (traits.wakeUpDelay) putField(bytes[0], 0x30, wakeUpBits(values.wakeUpDelay) * 16);
  if (traits.measuresOscillator()) {
    putField(bytes[1], 0x07, lowVoltageBits(values.lowVoltageIndex));
    const auto registers = trim.value_or(RcTrim{.code = 88, .fine = 128});
    bytes[3] = registers.code;
    bytes[4] = registers.fine;
  }
  if (traits.oscillator == catalogue::Oscillator::TrimmedByHand) {
    bytes[3] = byteOf(values.trimBand * 64 + values.trimStep);
    bytes[4] = byteOf(values.trimFine);
  }
}

}  // namespace

PanelValues defaultValues(catalogue::Family family) {
  PanelValues values{.family = family};
  for (const auto& row : optionRows(catalogue::traitsOf(family).panelSlot)) {
    if (isChoice(row)) values.choices[std::string(row.key)] = row.text == "1" ? "True" : "False";
    if (row.key == "WDT_Prescalar") values.prescaler = row.text;
    if (row.key == "RC30K_Divder") values.wakeUpDelay = row.text;
    if (row.key == "Low_Voltage_detector") values.lowVoltageIndex = 0;
  }
  return values;
}

OptionBytes defaultBytes(const FamilyTraits& traits) {
  OptionBytes bytes;
  bytes.fill(255);
  if (traits.cedarOptions()) bytes[1] = 253;
  if (traits.shortOptions()) bytes[8] = 247;
  return bytes;
}

WantedOptions composeOptions(const PanelValues& values, std::optional<RcTrim> trim) {
  const FamilyTraits& traits = catalogue::traitsOf(values.family);
  WantedOptions wanted{.bytes = defaultBytes(traits), .words = {}};
  if (!values.noOptions) {
    for (const auto& row : optionRows(traits.panelSlot)) {
      const auto chosen = values.choices.find(row.key);
      if (row.place.known() && chosen != values.choices.end() && chosen->second == "True")
        putBit(wanted.bytes, row.place);
    }
    putFields(wanted.bytes, values, trim);
  }
  wanted.words = {.doubleSpeed = wordOf(traits, "Double_speed_YES", wanted.bytes),
                  .clearUnusedAp = wordOf(traits, "Clear_Unused_AP_YES", wanted.bytes)};
  if (traits.allOptions()) {  // these chips keep the boot firmware's own choices in byte 12
    wanted.bytes[12] = wanted.bytes[8];
    wanted.bytes[8] = 255;
  }
  return wanted;
}

std::string wordOf(const FamilyTraits& traits, std::string_view key, const OptionBytes& bytes) {
  const auto* row = findRow(traits.panelSlot, key);
  if (row == nullptr || !row->place.known()) return {};
  return holds(bytes, row->place) ? "1" : "0";
}

void refreshChoices(const FamilyTraits& traits, OptionSet& set) {
  if (traits.layout == catalogue::OptionLayout::None) return;
  set.wanted = defaultBytes(traits);
  set.reportedWords = {.doubleSpeed = wordOf(traits, "Double_speed_YES", set.reported), .clearUnusedAp = {}};
}

}  // namespace kvr::options
