#include "project/project_plan.h"

#include "platform/text.h"
#include "project/old_project.h"

namespace kvr::project {
namespace {

constexpr std::string_view kVersionKey = "VER";
constexpr std::string_view kVersion = "1.2";
constexpr std::string_view kModelKey = "MCU_Type";
constexpr const char* kUnknownModel = "Can not find the MCU type: ";

// The options in the order in which they stand in a file; each family has its own choice of them.
constexpr std::string_view kOptionKeys[] = {
    "Double_speed_YES", "Double_speed_NO", "Interior_Oscillate", "Exterior_Oscillate", "Half_Gain_YES", "Half_Gain_NO",
    "Disregard_P10_P11", "P10_P11_00_Download", "AUX_RAM_Enable_NO", "AUX_RAM_Enable_YES", "Reset_Close_WDT_NO",
    "Reset_Close_WDT_YES", "Clear_EEPROM_00H", "Clear_EEPROM_FFH", "Clear_EEPROM_Spite", "Clear_Unused_AP_YES",
    "Clear_Unused_AP_NO", "Unchangeable_WDT_YES", "Unchangeable_WDT_NO", "Power_On_Run_WDT_YES", "Power_On_Run_WDT_NO",
    "Idle_Run_WDT_YES", "Idle_Run_WDT_NO", "LowU_Unwrite_YES", "LowU_Unwrite_NO", "LowU_Reset_YES", "LowU_Reset_NO",
    "WDT_Prescalar", "Low_Voltage_detector", "EN810_200mS_YES", "EN810_200mS_NO", "P4_7_As_RESET_NO",
    "P4_7_As_RESET_YES", "P4_5_As_ALE_NO", "P4_5_As_ALE_YES", "RC30K_Divder",
    // Behind all others, so that the order of the rest is what it always was.
    "New_ISP_f_NO", "New_ISP_f_YES"};

OpenPlan refused(std::string why) {
  OpenPlan plan;
  plan.refusal = std::move(why);
  return plan;
}

// A header of today: version and model stand in its first two lines.
OpenPlan planToday(const Header& header) {
  if (platform::valueOf(header.front().value) < 1.2) {
    return refused("Sorry, the current program does not support Ver1.1 project files.");
  }
  const HeaderLine* named = findLine(header, kModelKey);
  if (!named) return refused(kUnknownModel + header.front().key);
  OpenPlan plan;
  plan.model = catalogue::findByName(named->value);
  if (!plan.model) return refused(kUnknownModel + named->value);
  if (header.size() > 2) plan.lines.assign(header.begin() + 2, header.end());
  return plan;
}

OpenPlan planOld(const Header& header) {
  const std::string name = oldModelName(header);
  OpenPlan plan;
  plan.old = true;
  plan.model = catalogue::findByName(name);
  if (!plan.model) {
    const std::string first = header.empty() ? std::string() : header.front().key;
    return refused(kUnknownModel + (name.empty() ? first : name));
  }
  plan.lines = convertOldProject(header, traitsOf(*plan.model).oldKeys);
  return plan;
}

}  // namespace

OpenPlan planOpening(const ProjectText& text) {
  OpenPlan plan = isOldProject(text.header) ? planOld(text.header) : planToday(text.header);
  // Cut short ahead of the code: whatever else the file says, its image is missing.
  if (plan.refusal.empty() && !text.ended) return refused("The check sum of code file is incorrect.");
  // The model is applied as a whole; a second line about it would only rename the box.
  std::erase_if(plan.lines, [](const HeaderLine& line) { return line.key.empty() || line.key == kModelKey; });
  return plan;
}

Header headerFor(const catalogue::FamilyTraits& traits,
                 const std::function<std::string(const options::OptionRow&)>& common,
                 const std::function<std::string(std::string_view)>& option) {
  Header header{{std::string(kVersionKey), std::string(kVersion)}};
  for (const options::OptionRow& row : options::optionRows(options::kCommonSlot)) {
    header.push_back({std::string(row.key), common(row)});
  }
  for (const std::string_view key : kOptionKeys) {
    if (options::findRow(traits.panelSlot, key)) {
      header.push_back({std::string(key), option(key)});
    } else if (options::findRow(traits.projectSlot, key)) {
      header.push_back({std::string(key), "False"});  // files of the family have the key, its panel has not
    }
  }
  return header;
}

}  // namespace kvr::project
