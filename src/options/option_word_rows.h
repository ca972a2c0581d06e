// The names that options and their choices have on a command line and in a plan, and what they mean in plain words: a
// row an option, beside the tables of the panels. A key means something else in some families, so a row says for which
// tables it holds; in each table exactly one row names a key.
#pragma once

#include <array>
#include <initializer_list>
#include <string_view>

namespace kvr::options::rows {

// The tables that a row holds for, a bit each; see `optionRows`.
using Slots = unsigned;
constexpr Slots in(std::initializer_list<int> slots) {
  Slots mask = 0;
  for (const int slot : slots) mask |= 1U << slot;
  return mask;
}
inline constexpr Slots kEvery = ~0U;

struct ChoiceWordRow {
  std::string_view key;
  std::string_view word;
  std::string_view meaning;  // empty: the button's caption says it, such as the figure of a threshold
};

struct OptionWordRow {
  Slots slots;
  std::string_view word;
  std::string_view meaning;
  std::array<ChoiceWordRow, 3> choices;  // of buttons
  std::string_view listKey{};            // of a list, whose entries are their own words
};

constexpr OptionWordRow listWord(Slots slots, std::string_view word, std::string_view meaning, std::string_view key) {
  return {.slots = slots, .word = word, .meaning = meaning, .choices = {}, .listKey = key};
}

// clang-format off

inline constexpr std::array kOptionWords = {
  OptionWordRow{kEvery, "double-speed", "clocks in a machine cycle", {{
    {"Double_speed_YES", "yes", "6"},
    {"Double_speed_NO",  "no",  "12"}}}},
  OptionWordRow{kEvery, "clock", "what the chip runs from after its next power-up", {{
    {"Interior_Oscillate", "internal", "on-chip RC oscillator"},
    {"Exterior_Oscillate", "external", "crystal or clock at the pins"}}}},
  OptionWordRow{kEvery, "oscillator-gain", "gain of the crystal oscillator", {{
    {"Half_Gain_NO",  "high", "for any crystal"},
    {"Half_Gain_YES", "low",  "half, for slow crystals; saves power"}}}},
  OptionWordRow{kEvery & ~in({10}), "download-pins", "level of P1.0 and P1.1 at the next download", {{
    {"Disregard_P10_P11",   "any", "does not matter"},
    {"P10_P11_00_Download", "low", "both must be low, or the chip does not answer"}}}},
  OptionWordRow{in({10}), "download-pins", "level of P3.2 and P3.3 at the next download", {{
    {"Disregard_P10_P11",   "any", "does not matter"},
    {"P10_P11_00_Download", "low", "both must be low, or the chip does not answer"}}}},
  OptionWordRow{kEvery, "aux-ram", "auxiliary RAM on the chip", {{
    {"AUX_RAM_Enable_NO",  "no",  "off"},
    {"AUX_RAM_Enable_YES", "yes", "on"}}}},

  OptionWordRow{in({2, 10}), "erase-eeprom", "what the next download does to the EEPROM", {{
    {"Clear_EEPROM_FFH",   "yes", "erases it to FF"},
    {"Clear_EEPROM_Spite", "no",  "leaves it alone"}}}},
  OptionWordRow{in({4}), "erase-eeprom", "what the next download does to the EEPROM", {{
    {"Clear_EEPROM_00H",   "yes", "clears it to 00"},
    {"Clear_EEPROM_Spite", "no",  "leaves it alone"}}}},
  OptionWordRow{in({5, 6, 7, 8, 9}), "erase-eeprom", "what the next download does to the EEPROM", {{
    {"Clear_EEPROM_00H",   "yes", "erases it to FF"},
    {"Clear_EEPROM_Spite", "no",  "leaves it alone"}}}},
  OptionWordRow{in({15}), "erase-eeprom", "what the next download does to the EEPROM", {{
    {"Clear_EEPROM_00H",   "00", "clears it to 00, which takes a little longer"},
    {"Clear_EEPROM_FFH",   "ff", "erases it to FF"},
    {"Clear_EEPROM_Spite", "no", "leaves it alone"}}}},
  OptionWordRow{kEvery, "unused-code", "the code area that the image does not reach, in this download", {{
    {"Clear_Unused_AP_YES", "00", "is cleared to 00, which takes a little longer"},
    {"Clear_Unused_AP_NO",  "ff", "is erased to FF"}}}},

  OptionWordRow{in({6, 7, 9}), "reset-pin", "use of the pin RESET/P4.7", {{
    {"P4_7_As_RESET_NO",  "io",    "P4.7; needs clock=external"},
    {"P4_7_As_RESET_YES", "reset", "RESET"}}}},
  OptionWordRow{in({8}), "reset-pin", "use of the pin RESET/P3.6", {{
    {"P4_7_As_RESET_NO",  "io",    "P3.6; needs clock=external"},
    {"P4_7_As_RESET_YES", "reset", "RESET"}}}},
  OptionWordRow{in({10}), "reset-pin", "use of the pin RESET/P0.0", {{
    {"P4_7_As_RESET_NO",  "io",    "P0.0"},
    {"P4_7_As_RESET_YES", "reset", "RESET"}}}},
  OptionWordRow{kEvery, "ale-pin", "use of the pin ALE/P4.5", {{
    {"P4_5_As_ALE_NO",  "io",  "P4.5"},
    {"P4_5_As_ALE_YES", "ale", "ALE"}}}},
  OptionWordRow{in({5}), "reset2-pin", "use of the pin P1.2/RESET2", {{
    {"LowU_Reset_YES", "reset", ""},
    {"LowU_Reset_NO",  "io",    "P1.2 or low-voltage detector"}}}},
  OptionWordRow{in({6}), "reset2-pin", "use of the pin P4.6/RESET2", {{
    {"LowU_Reset_YES", "reset", ""},
    {"LowU_Reset_NO",  "io",    "P4.6 or low-voltage detector"}}}},
  OptionWordRow{kEvery, "reset-delay", "extra delay of the reset at power-up", {{
    {"EN810_200mS_YES", "yes", "added"},
    {"EN810_200mS_NO",  "no",  "none"}}}},

  OptionWordRow{in({4, 7, 8, 9}), "low-voltage-reset", "supply voltage below which the chip resets", {{
    {"LowU_Reset_YES", "high", ""},
    {"LowU_Reset_NO",  "low",  ""}}}},
  OptionWordRow{in({15}), "low-voltage-reset", "reset when the supply voltage falls", {{
    {"LowU_Reset_YES", "yes", "the chip resets"},
    {"LowU_Reset_NO",  "no",  "it does not"}}}},
  OptionWordRow{in({10}), "low-voltage-action", "what a low supply voltage brings about", {{
    {"LowU_Reset_YES", "reset",     "a reset"},
    {"LowU_Reset_NO",  "interrupt", "an interrupt, if the program allows it"}}}},
  listWord(kEvery, "low-voltage-threshold", "supply voltage, V, that counts as low", "Low_Voltage_detector"),
  OptionWordRow{in({10}), "low-voltage-write", "writing the EEPROM while the supply voltage is low", {{
    {"LowU_Unwrite_YES", "allowed",   "possible"},
    {"LowU_Unwrite_NO",  "protected", "not possible"}}}},
  OptionWordRow{in({15}), "low-voltage-write", "writing the EEPROM while the supply voltage is low", {{
    {"LowU_Unwrite_YES", "protected", "not possible"},
    {"LowU_Unwrite_NO",  "allowed",   "possible"}}}},
  listWord(kEvery, "wake-up-delay", "clocks that the processor waits after a wake-up from Power Down", "RC30K_Divder"),

  OptionWordRow{kEvery, "wdt-stops-with", "what stops the watchdog once it runs", {{
    {"Reset_Close_WDT_NO",  "power-down", "Power Down"},
    {"Reset_Close_WDT_YES", "reset",      "a reset"}}}},
  OptionWordRow{kEvery, "wdt-locked", "whether the program may change the watchdog's prescaler", {{
    {"Unchangeable_WDT_YES", "yes", "it may not"},
    {"Unchangeable_WDT_NO",  "no",  "it may"}}}},
  OptionWordRow{kEvery, "wdt-at-power-up", "watchdog started by the power-up itself", {{
    {"Power_On_Run_WDT_YES", "yes", "runs from the start"},
    {"Power_On_Run_WDT_NO",  "no",  "the program starts it"}}}},
  OptionWordRow{kEvery, "wdt-stops-in-idle", "watchdog in Idle mode, with wdt-at-power-up=yes", {{
    {"Idle_Run_WDT_YES", "yes", "stops counting"},
    {"Idle_Run_WDT_NO",  "no",  "goes on counting"}}}},
  listWord(kEvery, "wdt-prescaler", "prescaler of the watchdog, with wdt-at-power-up=yes", "WDT_Prescalar"),

  OptionWordRow{kEvery, "download-clock", "clock of the boot firmware while it programs, MHz", {{
    {"New_ISP_f_NO",  "24", "up to 57600 baud"},
    {"New_ISP_f_YES", "12", "up to 38400 baud"}}}},
};

// clang-format on

}  // namespace kvr::options::rows
