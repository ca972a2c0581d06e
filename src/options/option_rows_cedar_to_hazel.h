// Option tables of the older families: Alder; Cedar, Maple, Nutmeg, Oak; Elm, Fir, Gum; Hazel. Braces hold byte, bit
// and the bit's value when chosen; kYes marks the choice that a freshly selected model starts with.
#pragma once

#include "options/option_row_makers.h"
#include "options/option_rows_shared.h"

namespace kvr::options::rows {

// clang-format off

inline constexpr auto kAlder = table(
  label(0, "Double speed / 双倍速:"),
  button(0, 0, "6T/双倍速",  "Double_speed_YES", {1, 3, 1}, kNo),
  button(0, 1, "12T/单倍速", "Double_speed_NO",  {1, 3, 0}, kYes));

inline constexpr auto kCedar = table(
  label(0, "Double speed:"),
  button(0, 0, "6T",  "Double_speed_YES", {1, 0, 0}, kNo,  "Double speed:                     YES, 6T"),
  button(0, 1, "12T", "Double_speed_NO",  {1, 0, 1}, kYes, "Double speed:                     NO, 12T"),
  label(1, "Oscillator Gain( <12MHz can select Low):"),
  button(1, 0, "Low",  "Half_Gain_YES", {1, 4, 0}, kNo,  "Oscillator Gain:                  1/2 gain"),
  button(1, 1, "High", "Half_Gain_NO",  {1, 4, 1}, kYes, "Oscillator Gain:                 full gain"),
  label(2, ""),
  label(3, "Next Program Code,P1.0/P1.1:"),
  button(3, 1, "Not Related", "Disregard_P10_P11",   {1, 2, 1}, kYes, kPinsNotRelated),
  button(3, 0, "Need = 0/0",  "P10_P11_00_Download", {1, 2, 0}, kNo,  kPinsNeeded),
  label(4, "Enable AUX-RAM:"),
  button(4, 0, "Disable", "AUX_RAM_Enable_NO",  {1, 6, 0}, kNo,  "Disable AUX-RAM."),
  button(4, 1, "Enable",  "AUX_RAM_Enable_YES", {1, 6, 1}, kYes, "Enable AUX-RAM."),
  label(5, "Next Program Code,erase EEPROM data to FF:"),
  button(5, 0, "YES", "Clear_EEPROM_FFH",   {1, 3, 0}, kNo,  kErasesData),
  button(5, 1, "NO",  "Clear_EEPROM_Spite", {1, 3, 1}, kYes, kKeepsData),
  label(8, "Close WDT:"),
  button(8, 1, "Close With Power Down", "Reset_Close_WDT_NO",  {1, 7, 0}, kNo,  "After start WDT: Close with Power Down"),
  button(8, 0, "Close With Reset",      "Reset_Close_WDT_YES", {1, 7, 1}, kYes, "After start WDT: Close with Reset"),
  label(9, "The following function only has some MCU be available"),
  label(10, "ALE/P4.5 pin:"),
  button(10, 0, "Used as P4.5",    "P4_5_As_ALE_NO",  {1, 5, 0}, kNo,  "ALE/P4.5 pin used as P4.5"),
  button(10, 1, "Used as ALE pin", "P4_5_As_ALE_YES", {1, 5, 1}, kYes, "ALE/P4.5 pin used as ALE"));

inline constexpr auto kElm = table(
  clockSource(2, kNo, kOnChipClock),
  label(1, "Next Program Code,P1.0/P1.1:"),
  button(1, 1, "Not Related", "Disregard_P10_P11",   {8, 0, 1}, kYes, kPinsNotRelated),
  button(1, 0, "Need = 0/0",  "P10_P11_00_Download", {8, 0, 0}, kNo,  kPinsNeeded),
  label(2, "Next Program Code,clear EEPROM data to 00:"),
  button(2, 0, "YES", "Clear_EEPROM_00H",   {8, 1, 0}, kNo,  "Next ISP Programming Clear Data Flash To 0:  YES"),
  button(2, 1, "NO",  "Clear_EEPROM_Spite", {8, 1, 1}, kYes, "Next ISP Programming Clear Data Flash To 0:  NO"),
  label(3, "--- This time Program ---"),
  label(4, "Didn't yet use of the application"),
  button(4, 0, "Write 0",  "Clear_Unused_AP_YES", {16, 0, 0}, kNo),
  button(4, 1, "Write FF", "Clear_Unused_AP_NO",  {16, 0, 1}, kYes),
  lowVoltageReset("< 3.7V", "< 3.3V"),
  watchdog(10, 3, kNo));

inline constexpr auto kHazel = table(
  clockSource(2, kYes, kOnChipClock),
  resetDelay(1, 2),
  oscillatorGain(2, 2),
  programPins(3),
  label(4, "Next Program Code,erase EEPROM data to FF:"),
  button(4, 0, "YES", "Clear_EEPROM_00H",   {8, 1, 0}, kNo,  "Next ISP Programming Code, clear EEPROM data"),
  button(4, 1, "NO",  "Clear_EEPROM_Spite", {8, 1, 1}, kYes, "Next ISP Programming Code,don't clear EEPROM data"),
  label(8, "P1.2/RESET2:"),
  button(8, 0, "<1.33V Voltage Reset", "LowU_Reset_YES", {0, 6, 0}, kNo,  "P1.2/RESET2 pin, voltage<1.33V Reset"),
  button(8, 1, "Used as P1.2/LVD",     "LowU_Reset_NO",  {0, 6, 1}, kYes, "P1.2/RESET2 is used as P1.2/LVD"),
  label(9, "MCU Clock >12MHz, please use P1.2/RESET2 as RESET2"),
  watchdog(10, 3, kYes));

// clang-format on

}  // namespace kvr::options::rows
