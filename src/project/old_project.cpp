#include "project/old_project.h"

#include <span>

namespace kvr::project {
namespace {

struct OldKey {
  std::string_view today;
  std::string_view older;
};

constexpr std::string_view kOldModelKey = "MCU type";

constexpr OldKey kGeneral[] = {
    {"Auto_Increase_Enable", "Auto_Increase_Check"},
    {"Auto_Increase_Address", "Auto_Increase_Address"},
    {"Auto_Increase_Bytes", "Auto_Increase_Bytes"},
    {"Auto_Increase_Next", "Auto_Increase_Next"},
    {"Auto_Increase", "Auto_Increase"},
    {"Auto_Increase_HEX", "Auto_Increase_HEX"},
    {"Auto_Increase_BCD", "Auto_Increase_BCD"},
    {"Auto_Increase_ASCII", "Auto_Increase_ASCII"},
};

constexpr OldKey kOptionsOfCedar[] = {
    {"Double_speed_YES", "Option0(0)"},
    {"Double_speed_NO", "Option0(1)"},
    {"Half_Gain_YES", "Option1(0)"},
    {"Half_Gain_NO", "Option1(1)"},
    {"Disregard_P10_P11", "Option2(1)"},
    {"P10_P11_00_Download", "Option2(0)"},
    {"AUX_RAM_Enable_NO", "AUX_RAM(0)"},
    {"AUX_RAM_Enable_YES", "AUX_RAM(1)"},
    {"Reset_Close_WDT_NO", "RST_CLOSE_WDT(0)"},
    {"Reset_Close_WDT_YES", "RST_CLOSE_WDT(1)"},
    {"Clear_EEPROM_FFH", "OptionEraseData(0)"},
    {"Clear_EEPROM_Spite", "OptionEraseData(1)"},
};

constexpr OldKey kOptionsOfOthers[] = {
    {"Interior_Oscillate", "Option0(0)"},   {"Exterior_Oscillate", "Option0(1)"},
    {"Disregard_P10_P11", "Option1(1)"},    {"P10_P11_00_Download", "Option1(0)"},
    {"Clear_EEPROM_00H", "Option2(0)"},     {"Clear_EEPROM_Spite", "Option2(1)"},
    {"Unchangeable_WDT_YES", "Option8(0)"}, {"Unchangeable_WDT_NO", "Option8(1)"},
    {"Power_On_Run_WDT_YES", "Option9(0)"}, {"Power_On_Run_WDT_NO", "Option9(1)"},
    {"Idle_Run_WDT_YES", "Option10(0)"},    {"Idle_Run_WDT_NO", "Option10(1)"},
};

constexpr OldKey kTail[] = {
    {"WDT_Prescalar", "WDT_Prescalar"},
    {"buffer_check_sum", "buffer_check_sum"},
};

// The last line with a key counts.
const HeaderLine* lastLine(const Header& header, std::string_view key) {
  for (auto line = header.rbegin(); line != header.rend(); ++line) {
    if (line->key == key) return &*line;
  }
  return nullptr;
}

void translate(const Header& old, std::span<const OldKey> keys, Header& today) {
  for (const OldKey& key : keys) {
    if (const HeaderLine* line = lastLine(old, key.older)) today.push_back({std::string(key.today), line->value});
  }
}

}  // namespace

bool isOldProject(const Header& header) {
  return header.empty() || header.front().key != "VER";
}

std::string oldModelName(const Header& header) {
  const HeaderLine* line = lastLine(header, kOldModelKey);
  return line ? line->value : std::string();
}

Header convertOldProject(const Header& old, catalogue::OldOptionKeys keys) {
  Header today;
  translate(old, kGeneral, today);
  const bool cedar = keys == catalogue::OldOptionKeys::Cedar;
  translate(old, cedar ? std::span<const OldKey>(kOptionsOfCedar) : std::span<const OldKey>(kOptionsOfOthers), today);
  translate(old, kTail, today);
  return today;
}

}  // namespace kvr::project
