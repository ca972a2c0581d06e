// Option lines that several families have with the same texts; what differs is the byte, the line and the default.
#pragma once

#include "options/option_row_makers.h"

namespace kvr::options::rows {

inline constexpr std::string_view kPinsNotRelated = "P1.0/P1.1 are not related to KVR ISP Programming";
inline constexpr std::string_view kPinsNeeded = "P1.0/P1.1 need = 0/0 when Programming";
inline constexpr std::string_view kErasesData = "Next ISP Programming Code,erase EEPROM data to FF";
inline constexpr std::string_view kKeepsData = "Next ISP Programming Code,don't erase EEPROM data";
inline constexpr std::string_view kOnChipClock = "Next Power-Up-Reset, use On-Chip R/C clock";
inline constexpr std::string_view kLowVoltageReset = "Low Voltage Reset, when MCU-VCC";
inline constexpr std::string_view kResetIsReset = "RESET/P4.7 is used as RESET";
inline constexpr std::string_view kResetIsPin = "RESET/P4.7 is used as P4.7";

// clang-format off

// The clock at the next cold start: bit 1 of the byte, always on line 0.
constexpr auto clockSource(int byte, bool interior, std::string_view interiorReport) {
  return table(
    label(0, "MCU Clock:"),
    button(0, 0, "On-Chip R/C clock",      "Interior_Oscillate", {byte, 1, 0}, interior,  interiorReport),
    button(0, 1, "External Crystal/Clock", "Exterior_Oscillate", {byte, 1, 1}, !interior, "Next Power-Up-Reset, use External Crystal/Clock"));
}

// The RESET pin of families with one, on line 1.
constexpr auto resetPin(std::string_view text, std::string_view asPin, std::string_view pinReport, std::string_view resetReport) {
  return table(
    label(1, text),
    button(1, 0, asPin,   "P4_7_As_RESET_NO",  {0, 0, 0}, kNo,  pinReport),
    button(1, 1, "RESET", "P4_7_As_RESET_YES", {0, 0, 1}, kYes, resetReport));
}

constexpr auto resetDelay(int line, int byte) {
  return table(
    label(line, "Power-Up Reset,add extra Reset-Delay-Time"),
    button(line, 0, "YES", "EN810_200mS_YES", {byte, 7, 0}, kYes, "Power-Up Reset,add extra Reset-Delay-Time"),
    button(line, 1, "NO",  "EN810_200mS_NO",  {byte, 7, 1}, kNo,  "Power-Up do not add extra Reset-Delay-Time"));
}

constexpr auto oscillatorGain(int line, int byte) {
  return table(
    label(line, "Oscillator Gain( <12MHz can select Low):"),
    button(line, 0, "High", "Half_Gain_NO",  {byte, 6, 1}, kYes, "Oscillator Gain:                 High gain"),
    button(line, 1, "Low",  "Half_Gain_YES", {byte, 6, 0}, kNo,  "Oscillator Gain:                  Low gain"));
}

constexpr auto programPins(int line) {
  return table(
    label(line, "Next Program Code,P1.0/P1.1:"),
    button(line, 1, "Not Related", "Disregard_P10_P11",   {8, 0, 1}, kYes, kPinsNotRelated),
    button(line, 0, "Need = 0/0",  "P10_P11_00_Download", {8, 0, 0}, kNo,  kPinsNeeded));
}

// Line 5 of Ivy and later: "00H" in the key, though these chips erase to FF.
constexpr auto eraseData(std::string_view text) {
  return table(
    label(5, text),
    button(5, 0, "YES", "Clear_EEPROM_00H",   {8, 1, 0}, kNo,  kErasesData),
    button(5, 1, "NO",  "Clear_EEPROM_Spite", {8, 1, 1}, kYes, kKeepsData));
}

// Three lines. The first pair only shows its default: the boot firmware keeps the prescaler changeable.
constexpr auto watchdog(int line, int byte, bool stopsInIdle) {
  return table(
    label(line, "WDT_CONTR be write-protected except CLR_WDT"),
    shown(line, 0, "YES", "Unchangeable_WDT_YES", {byte, 7, 0}, kNo,  "WDT_CONTR be write-protected except CLR_WDT:YES"),
    shown(line, 1, "NO",  "Unchangeable_WDT_NO",  {byte, 7, 1}, kYes, "WDT_CONTR be write-protected except CLR_WDT:NO"),
    label(line + 1, "WDT is enabled automatically during power-up"),
    button(line + 1, 0, "YES", "Power_On_Run_WDT_YES", {byte, 5, 0}, kNo,  "WDT is enabled automatically during power-up:YES"),
    button(line + 1, 1, "NO",  "Power_On_Run_WDT_NO",  {byte, 5, 1}, kYes, "WDT is enabled automatically during power-up:NO"),
    label(line + 2, "Stop WatchDog Timer counting in Idle mode"),
    button(line + 2, 0, "YES", "Idle_Run_WDT_YES", {byte, 3, 0}, stopsInIdle,  "Stop WatchDog Timer counting in Idle mode:  YES"),
    button(line + 2, 1, "NO",  "Idle_Run_WDT_NO",  {byte, 3, 1}, !stopsInIdle, "Stop WatchDog Timer counting in Idle mode:  NO"),
    list("comWDT_Prescalar", 0, "WDT_Prescalar", "256"));
}

// The watch over the supply, lines 8 and 9, of the families whose threshold is a figure. The figures here are those of
// class H; captions of the other class and the report, which repeats the label, come from `captionText` and `reportText`.
constexpr auto lowVoltageReset(std::string_view high, std::string_view low) {
  return table(
    label(8, kLowVoltageReset),
    button(8, 0, high, "LowU_Reset_YES", {0, 6, 0}, kYes, kLowVoltageReset),
    button(8, 1, low,  "LowU_Reset_NO",  {0, 6, 1}, kNo,  kLowVoltageReset),
    label(9, "MCU Clock >12MHz select High"));
}

// Lines 6 and 7 of the families that let the clock settle after a wake-up.
constexpr auto wakeUpDelay() {
  return table(
    label(6, "Power Down mode, after MCU is waked up, MCU"),
    label(7, "will count n clocks then CPU start working, n="),
    list("comWDT_Prescalar", 1, "RC30K_Divder", "32768"));
}

// clang-format on

}  // namespace kvr::options::rows
