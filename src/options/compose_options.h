// From choices to option bytes, and from bytes to what the engine asks about them (`OptionWords`). Pure functions:
// nothing here knows a control or a chip.
#pragma once

#include <array>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "catalogue/family.h"
#include "options/option_set.h"

namespace kvr::options {

// What an options panel says, apart from the panel.
struct PanelValues {
  catalogue::Family family{};
  bool noOptions = false;  // the model's options cannot be changed: nothing else here has an effect

  // "True" or "False" by key, for the keys of buttons. A key that is missing is a choice that was not made.
  std::map<std::string, std::string, std::less<>> choices;

  std::string prescaler;     // `WDT_Prescalar`: "2" .. "256"; any other text counts as "256"
  std::string wakeUpDelay;   // `RC30K_Divder`: "4096" .. "32768"; any other text counts as "32768"
  int lowVoltageIndex = -1;  // place in the list `Low_Voltage_detector`, from the highest threshold down; -1: none
  int trimBand = 0;          // trimmed by hand: coarse trim, band 0..3 and step 0..63; fine trim 0..255
  int trimStep = 0;
  int trimFine = 128;
};

// The options that are lists, and the entries of two of them.
inline constexpr std::string_view kPrescalerKey = "WDT_Prescalar", kWakeUpKey = "RC30K_Divder",
                                  kLowVoltageKey = "Low_Voltage_detector";
inline constexpr std::array<std::string_view, 8> kPrescalers = {"2", "4", "8", "16", "32", "64", "128", "256"};
inline constexpr std::array<std::string_view, 4> kWakeUpDelays = {"4096", "8192", "16384", "32768"};

// A panel that has just been filled for a model of the family.
PanelValues defaultValues(catalogue::Family family);

// The bytes before any choice is looked at. Bits that no choice names go to the chip as they are here.
OptionBytes defaultBytes(const catalogue::FamilyTraits& traits);

struct WantedOptions {
  OptionBytes bytes{};
  OptionWords words;
  bool operator==(const WantedOptions&) const = default;
};

// The bytes of a panel, and its `OptionWords`. `trim` is what was measured for the wanted frequency; families whose
// oscillator is measured take a middle setting without it, others do not look at it.
WantedOptions composeOptions(const PanelValues& values, std::optional<RcTrim> trim);

// "1" when `bytes` hold the choice, "0" when not, empty when the family's table has no such key or the key is no bit.
std::string wordOf(const catalogue::FamilyTraits& traits, std::string_view key, const OptionBytes& bytes);

// After `reported` was filled: `reportedWords`. `wanted` goes back to the family's default bytes, so it must be
// composed again before it is used. A family without options is left alone.
void refreshChoices(const catalogue::FamilyTraits& traits, OptionSet& set);

}  // namespace kvr::options
