// Option tables of the later families: Ivy; Juniper and Sumac; Kauri; Larch; Pine and Quince; Rowan. Braces hold byte,
// bit and the bit's value when chosen; kYes marks the choice that a freshly selected model starts with.
#pragma once

#include "options/option_row_makers.h"
#include "options/option_rows_shared.h"

namespace kvr::options::rows {

// clang-format off

inline constexpr auto kIvy = table(
  clockSource(1, kNo, kOnChipClock),
  resetPin("RESET/P4.7 used as", "P4.7,must external clock", kResetIsPin, kResetIsReset),
  resetDelay(2, 1),
  oscillatorGain(3, 1),
  programPins(4),
  eraseData("Next Program Code,erase EEPROM data to FF:"),
  label(8, "P4.6/RESET2:"),
  button(8, 0, "<1.33V Voltage Reset", "LowU_Reset_YES", {0, 6, 0}, kNo,  "P4.6/RESET2 pin voltage<1.33V Reset"),
  button(8, 1, "Used as P4.6/LVD",     "LowU_Reset_NO",  {0, 6, 1}, kYes, "P4.6/RESET2 is used as P4.6/LVD"),
  label(9, "MCU Clock >12MHz, please use P4.6/RESET2 as RESET2"),
  watchdog(10, 2, kYes));

inline constexpr auto kJuniper = table(
  clockSource(1, kNo, kOnChipClock),
  resetPin("RESET/P4.7 used as", "P4.7,must external clock", kResetIsPin, kResetIsReset),
  resetDelay(2, 1),
  oscillatorGain(3, 1),
  programPins(4),
  eraseData("Next Program Code,erase EEPROM data to FF"),
  lowVoltageReset("< 3.8V", "< 3.3V"),
  watchdog(10, 2, kYes));

inline constexpr auto kKauri = table(
  clockSource(1, kYes, "Next Power-Up-Reset, use On-Chip RC Oscillator"),
  resetPin("RESET/P3.6 used as", "P3.6,must external clock", "RESET/P3.6 is used as P3.6", "RESET/P3.6 is used as RESET"),
  resetDelay(2, 1),
  oscillatorGain(3, 1),
  programPins(4),
  eraseData("Next Program Code,erase EEPROM data to FF:"),
  wakeUpDelay(),
  lowVoltageReset("< 4.1V", "< 3.5V"),
  watchdog(10, 2, kYes));

inline constexpr auto kLarch = table(
  clockSource(1, kNo, kOnChipClock),
  resetPin("RESET/P4.7 used as", "P4.7,must external clock", kResetIsPin, kResetIsReset),
  resetDelay(2, 1),
  oscillatorGain(3, 1),
  programPins(4),
  eraseData("Next Program Code,erase EEPROM data to FF:"),
  wakeUpDelay(),
  lowVoltageReset("< 4.1V", "< 3.7V"),
  watchdog(10, 2, kYes));

// No crystal: the clock is the internal oscillator, trimmed during the download. The base frequency is no bit of the chip.
inline constexpr auto kPine = table(
  label(0, "R/C oscillator frequency(Select/Enter)MHz"),
  label(1, "Download the R/C oscillator frequency"),
  button(1, 0, "24MHz", "New_ISP_f_NO",  {}, kNo),
  button(1, 1, "12MHz", "New_ISP_f_YES", {}, kYes),
  label(2, "RESET pin"),
  button(2, 0, "As I/O",       "P4_7_As_RESET_NO",  {0, 4, 0}, kYes, "RESET pin as P0.0"),
  button(2, 1, "RESET remain", "P4_7_As_RESET_YES", {0, 4, 1}, kNo,  "RESET/P0.0 as RESET"),
  label(3, "Power-Up Reset,add extra Reset-Delay-Time"),
  shown(3, 0, "YES", "EN810_200mS_YES", {0, 7, 0}, kNo,  "Power-Up Reset,add extra Reset-Delay-Time"),
  shown(3, 1, "NO",  "EN810_200mS_NO",  {0, 7, 1}, kYes, "Power-Up do not add extra Reset-Delay-Time"),
  label(4, "Next Program Code,P3.2/P3.3"),
  button(4, 1, "Not Related", "Disregard_P10_P11",   {8, 0, 1}, kYes, "P3.2/P3.3 are not related to KVR ISP Programming"),
  button(4, 0, "Need = 0/0",  "P10_P11_00_Download", {8, 0, 0}, kNo,  "P3.2/P3.3 need = 0/0 when Programming"),
  label(5, "Next Program Code,erase EEPROM data to FF:"),
  button(5, 0, "YES", "Clear_EEPROM_FFH",   {8, 1, 0}, kNo,  kErasesData),
  button(5, 1, "NO",  "Clear_EEPROM_Spite", {8, 1, 1}, kYes, kKeepsData),
  label(8, "Low voltage Reset/Interrupt can"),
  button(8, 0, "Reset",         "LowU_Reset_YES", {1, 6, 1}, kYes, "Low voltage Reset"),
  button(8, 1, "Interrupt can", "LowU_Reset_NO",  {1, 6, 0}, kNo,  "Low voltage Interrupt can"),
  label(9, "Low voltage operations IAP"),
  button(9, 0, "Enable write",  "LowU_Unwrite_YES", {1, 7, 1}, kYes, "When low voltage enable IAP read/write"),
  button(9, 1, "Write Protect", "LowU_Unwrite_NO",  {1, 7, 0}, kNo,  "Write Protect when low voltage."),
  label(10, "Low-voltage detection value(>12M selected high)"),
  list("com_RC_frequency", 4, "Low_Voltage_detector", "4.05"),
  watchdog(11, 2, kYes));

inline constexpr auto kRowan = table(
  label(0, "下次冷启动后时钟源为:"),
  button(0, 0, "内部RC振荡器",   "Interior_Oscillate", {3, 1, 0}, kNo),
  button(0, 1, "外部晶体或时钟", "Exterior_Oscillate", {3, 1, 1}, kYes),
  label(1, "振荡放大器增益:"),
  button(1, 0, "1/2 gain",  "Half_Gain_YES", {3, 6, 0}, kNo),
  button(1, 1, "full gain", "Half_Gain_NO",  {3, 6, 1}, kYes),
  label(2, "下次冷启动P1.0/P1.1:"),
  button(2, 1, "与下载无关",            "Disregard_P10_P11",   {8, 0, 1}, kYes),
  button(2, 0, "等于0/0才可以下载程序", "P10_P11_00_Download", {8, 0, 0}, kNo),
  label(3, "下次下载时将数据 EEPROM 区"),
  button(3, 0, "清0(略耗时)", "Clear_EEPROM_00H",   {8, 4, 0}, kNo),
  button(3, 1, "擦成FF",      "Clear_EEPROM_FFH",   {8, 1, 0}, kNo),
  button(3, 2, "不管",        "Clear_EEPROM_Spite", {8, 4, 1}, kYes),
  label(4, "本次下载时将用户程序区高端未用单元"),
  button(4, 0, "清0(略耗时)", "Clear_Unused_AP_YES", {8, 3, 0}, kNo),
  button(4, 1, "擦成FF",      "Clear_Unused_AP_NO",  {8, 3, 1}, kYes),
  label(8, "启动内部看门狗后禁止改看门狗分频数"),
  shown(8, 0, "YES", "Unchangeable_WDT_YES", {4, 7, 0}, kNo),
  shown(8, 1, "NO",  "Unchangeable_WDT_NO",  {4, 7, 1}, kYes),
  label(9, "下次上电时自动用有关参数启动内部看门狗"),
  button(9, 0, "YES", "Power_On_Run_WDT_YES", {4, 5, 0}, kNo),
  button(9, 1, "NO",  "Power_On_Run_WDT_NO",  {4, 5, 1}, kYes),
  label(10, "下次Idle(空闲)状态时内部看门狗停止计数"),
  button(10, 0, "YES", "Idle_Run_WDT_YES", {4, 3, 0}, kNo),
  button(10, 1, "NO",  "Idle_Run_WDT_NO",  {4, 3, 1}, kYes),
  list("comWDT_Prescalar", 0, "WDT_Prescalar", "256"),
  label(11, "EEPROM 低压写保护:"),
  button(11, 0, "YES", "LowU_Unwrite_YES", {0, 7, 0}, kYes),
  button(11, 1, "NO",  "LowU_Unwrite_NO",  {0, 7, 1}, kNo),
  label(12, "允许掉电复位:"),
  button(12, 0, "YES", "LowU_Reset_YES", {0, 6, 0}, kYes),
  button(12, 1, "NO",  "LowU_Reset_NO",  {0, 6, 1}, kNo));

// clang-format on

}  // namespace kvr::options::rows
