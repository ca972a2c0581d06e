#include "project/project_file.h"

#include <algorithm>
#include <numeric>

#include "images/image_buffer.h"
#include "options/option_table.h"
#include "options/option_words.h"
#include "platform/text.h"
#include "project/old_project.h"

namespace kvr::project {
namespace {

constexpr std::string_view kVersionKey = "VER";
constexpr std::string_view kVersion = "1.2";
constexpr std::string_view kCodeSumKey = "File_Check_Sum";
constexpr std::string_view kDataSumKey = "Dtat_File_CheckSum";  // spelt like this in every file
constexpr const char* kUnknownModel = "Can not find the MCU type: ";

// The options in the order in which a file has them; each family has its own choice of them.
constexpr std::string_view kOptionKeys[] = {
    "Double_speed_YES", "Double_speed_NO", "Interior_Oscillate", "Exterior_Oscillate", "Half_Gain_YES", "Half_Gain_NO",
    "Disregard_P10_P11", "P10_P11_00_Download", "AUX_RAM_Enable_NO", "AUX_RAM_Enable_YES", "Reset_Close_WDT_NO",
    "Reset_Close_WDT_YES", "Clear_EEPROM_00H", "Clear_EEPROM_FFH", "Clear_EEPROM_Spite", "Clear_Unused_AP_YES",
    "Clear_Unused_AP_NO", "Unchangeable_WDT_YES", "Unchangeable_WDT_NO", "Power_On_Run_WDT_YES", "Power_On_Run_WDT_NO",
    "Idle_Run_WDT_YES", "Idle_Run_WDT_NO", "LowU_Unwrite_YES", "LowU_Unwrite_NO", "LowU_Reset_YES", "LowU_Reset_NO",
    "WDT_Prescalar", "Low_Voltage_detector", "EN810_200mS_YES", "EN810_200mS_NO", "P4_7_As_RESET_NO",
    "P4_7_As_RESET_YES", "P4_5_As_ALE_NO", "P4_5_As_ALE_YES", "RC30K_Divder",
    // After all others, so that the order of the rest is what it always was.
    "New_ISP_f_NO", "New_ISP_f_YES"};

// What a header says, in today's keys.
struct Meaning {
  std::string refusal;
  const catalogue::McuRecord* model = nullptr;
  Header lines;
};

Meaning refused(std::string why) {
  return {.refusal = std::move(why), .model = nullptr, .lines = {}};
}

// A header of today: version and model are its first two lines.
Meaning meaningToday(const Header& header) {
  if (platform::valueOf(header.front().value) < 1.2) {
    return refused("Sorry, the current program does not support Ver1.1 project files.");
  }
  const HeaderLine* named = findLine(header, kModelKey);
  if (!named) return refused(kUnknownModel + header.front().key);
  const auto* model = catalogue::findByName(named->value);
  if (!model) return refused(kUnknownModel + named->value);
  Header lines;
  if (header.size() > 2) lines.assign(header.begin() + 2, header.end());
  return {.refusal = {}, .model = model, .lines = std::move(lines)};
}

Meaning meaningOld(const Header& header) {
  const std::string name = oldModelName(header);
  if (const auto* model = catalogue::findByName(name)) {
    return {.refusal = {}, .model = model, .lines = convertOldProject(header, traitsOf(*model).oldKeys)};
  }
  const std::string first = header.empty() ? std::string() : header.front().key;
  return refused(kUnknownModel + (name.empty() ? first : name));
}

// The lines that mean something for the family. The model is taken as a whole; a second line about it would only rename
// the box.
void sortLines(const Header& lines, const platform::TextCodec& codec, ReadProject& read) {
  for (const HeaderLine& line : lines) {
    if (line.key.empty() || line.key == kModelKey) continue;
    const bool general = options::findRow(options::kCommonSlot, line.key) != nullptr;
    if (!general && !options::findRow(traitsOf(*read.model).panelSlot, line.key)) continue;
    (general ? read.project.general : read.project.options).push_back({line.key, platform::utf8Of(line.value, codec)});
  }
}

std::string shownSum(const ProjectFile& project, std::string_view key) {
  const HeaderLine* line = findLine(project.general, key);
  return line ? platform::trim(line->value) : std::string();
}

std::int32_t sumOf(const ProjectFile& project, std::string_view key, const platform::Bytes& bytes) {
  const std::string shown = shownSum(project, key);
  if (!shown.empty()) return static_cast<std::int32_t>(platform::hexOf(shown));
  return std::accumulate(bytes.begin(), bytes.end(), 0);
}

// Of a choice that the model does not show: it has one all the same, and a saved project names it.
std::string hiddenStandard(const catalogue::FamilyTraits& traits, std::string_view key) {
  const options::OptionRow* row = options::findRow(traits.panelSlot, key);
  return row != nullptr && options::isChoice(*row) && row->text == "1" ? "True" : "False";
}

}  // namespace

std::vector<std::string_view> optionKeysOf(const catalogue::FamilyTraits& traits) {
  std::vector<std::string_view> keys;
  for (const std::string_view key : kOptionKeys) {
    if (options::findRow(traits.panelSlot, key) || options::findRow(traits.projectSlot, key)) {
      keys.push_back(key);
    }
  }
  return keys;
}

Header freshOptions(const catalogue::McuRecord& model) {
  std::vector<options::OptionLine> standard;
  for (const options::OptionWord& word : options::optionWords(model))
    for (options::OptionLine& line : options::linesOf(word, word.standard)) standard.push_back(std::move(line));
  Header fresh;
  for (const std::string_view key : optionKeysOf(traitsOf(model))) {
    const auto line = std::find_if(standard.begin(), standard.end(), [&](const auto& each) { return each.key == key; });
    fresh.push_back({std::string(key), line == standard.end() ? hiddenStandard(traitsOf(model), key) : line->value});
  }
  return fresh;
}

platform::Bytes textOf(const ProjectFile& project) {
  Header header{{std::string(kVersionKey), std::string(kVersion)}, {std::string(kModelKey), project.model}};
  header.insert(header.end(), project.general.begin(), project.general.end());
  header.insert(header.end(), project.options.begin(), project.options.end());
  using Part = std::optional<std::span<const std::uint8_t>>;
  return formatProject(header, project.code, project.data ? Part(*project.data) : std::nullopt);
}

ReadProject readProject(std::span<const std::uint8_t> file, const platform::TextCodec& codec) {
  ProjectText text = parseProject(file, images::kCodeBufferSize, images::kEepromBufferSize);
  ReadProject read;
  read.old = isOldProject(text.header);
  const Meaning meaning = read.old ? meaningOld(text.header) : meaningToday(text.header);
  read.refusal = meaning.refusal;
  read.model = meaning.model;
  // Cut short ahead of the code: whatever else the file says, its image is missing.
  if (read.refusal.empty() && !text.ended) read.refusal = "The check sum of code file is incorrect.";
  if (!read.refusal.empty()) return read;
  read.project.model = meaning.model->name;
  sortLines(meaning.lines, codec, read);
  read.codeSound = text.code.sound();
  read.project.code = std::move(text.code.bytes);
  read.dataMissing = !text.data && !shownSum(read.project, kDataSumKey).empty();
  if (!text.data) return read;
  read.dataSound = text.data->sound();
  read.project.data = std::move(text.data->bytes);
  return read;
}

std::int32_t codeSumOf(const ProjectFile& project) {
  return sumOf(project, kCodeSumKey, project.code);
}

std::int32_t dataSumOf(const ProjectFile& project) {
  return project.data ? sumOf(project, kDataSumKey, *project.data) : 0;
}

}  // namespace kvr::project
