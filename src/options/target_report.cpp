#include "options/target_report.h"

#include <utility>

#include "options/option_table.h"

namespace kvr::options {

using catalogue::FamilyTraits;

namespace {

// The family whose table has the texts for a chip with this letter; null: the letter reports no rows.
const FamilyTraits* reportedAs(catalogue::Stepping stepping) {
  const auto family = catalogue::familyOf(stepping);
  return family && catalogue::traitsOf(*family).reported ? &catalogue::traitsOf(*family) : nullptr;
}

std::string versionAndLetter(const ChipAnswer& answer) {
  return answer.firmware.text() + answer.stepping.text();
}

char classOf(const std::string& modelName) {
  return catalogue::voltageClass(catalogue::McuRecord{.name = modelName});
}

std::string watchdogLine(const OptionBytes& bytes, const FamilyTraits& traits) {
  const auto* start = findRow(traits.panelSlot, "Power_On_Run_WDT_YES");
  const int prescale = 2 << (bytes[static_cast<std::size_t>(traits.watchdogByte)] & 7);
  const bool starts = start != nullptr && holds(bytes, start->place);
  return (starts ? "Pre-scale time of WDT:               " : "Pre-scale time of WDT(did not start): ") +
         std::to_string(prescale);
}

std::string wakeUpLine(const OptionBytes& bytes) {
  return "Wait n clocks after MCU is waked up: " + std::to_string(4096 << (bytes[0] >> 4 & 3));
}

// Values above that of the list's first entry have no entry: the figure stays empty.
std::string lowVoltageLine(const OptionBytes& bytes, char voltageClass) {
  const auto choices = lowVoltageChoices(voltageClass);
  const int index = 7 - (bytes[1] & 7) - 3;
  const std::string volts(index >= 0 ? choices[static_cast<std::size_t>(index)] : "");
  return "Low Voltage detector                 " + volts + "V";
}

std::string lineOf(std::size_t row, const FamilyTraits& traits, const OptionBytes& bytes, char voltageClass) {
  const auto& entry = optionRows(traits.panelSlot)[row];
  if (entry.key == "WDT_Prescalar" && traits.watchdogByte >= 0) return watchdogLine(bytes, traits);
  if (entry.key == "RC30K_Divder" && traits.wakeUpDelay) return wakeUpLine(bytes);
  if (entry.key == "Low_Voltage_detector") return lowVoltageLine(bytes, voltageClass);
  return holds(bytes, entry.place) ? reportText(traits.panelSlot, row, voltageClass) : std::string();
}

std::vector<std::string> rowLines(const ChipAnswer& answer, const FamilyTraits& traits) {
  OptionBytes bytes = answer.reported;
  if (traits.allOptions()) bytes[8] = std::exchange(bytes[12], std::uint8_t{255});
  std::vector<std::string> lines;
  const char voltageClass = classOf(answer.modelName);
  for (std::size_t row = 0; row < optionRows(traits.panelSlot).size(); ++row)
    if (auto line = lineOf(row, traits, bytes, voltageClass); !line.empty()) lines.push_back(std::move(line));
  return lines;
}

std::vector<std::string> rowLabels(const ChipAnswer& answer, const std::vector<std::string>& lines) {
  std::vector<std::string> labels = {" MCU: " + answer.modelName + "  Firmware Version: " + versionAndLetter(answer)};
  labels.insert(labels.end(), lines.begin(), lines.end());
  return labels;
}

bool bit(std::uint8_t byte, int number) {
  return (byte >> number & 1) != 0;
}

// The one option byte of letter "C", bit by bit.
void addFixedLabels(std::vector<std::string>& labels, std::uint8_t status) {
  labels.emplace_back(bit(status, 4) ? "Oscillator gain / 振荡器增益: full gain"
                                     : "Oscillator gain / 振荡器增益: 1/2 gain");
  labels.emplace_back(bit(status, 2) ? "P1.0/P1.1 are not related to ISP programming / 与下载无关"
                                     : "P1.0/P1.1 must be 0/0 to enter ISP programming / 等于0/0才可下载");
  labels.emplace_back(bit(status, 6) ? "Internal AUX-RAM / 内部扩展RAM: allowed"
                                     : "Internal AUX-RAM / 内部扩展RAM: not allowed");
  labels.emplace_back(bit(status, 3) ? "EEPROM data is not erased with the code / 不擦除EEPROM"
                                     : "EEPROM data is erased with the code / 擦除EEPROM");
  labels.emplace_back(bit(status, 7) ? "Reset closes the watchdog / 复位可关看门狗"
                                     : "Only power-off closes the watchdog / 停电才可关看门狗");
}

// Firmwares of the first generation report a single byte, shown in labels of fixed wording.
std::vector<std::string> olderLabels(const ChipAnswer& answer) {
  std::vector<std::string> labels;
  labels.push_back(answer.modelName.empty() ? "" : "MCU Type is:                      " + answer.modelName);
  const std::string version = answer.stepping == 'A' ? "MCU Firmware Version : " : "MCU Firmware Version: ";
  labels.push_back(!answer.firmware.known() ? "" : version + versionAndLetter(answer));
  const bool doubled = answer.stepping == 'A' ? bit(answer.status13, 3) : !bit(answer.status13, 0);
  const std::string speed = answer.stepping == 'B' ? "Unknown" : doubled ? "Yes" : "No";
  labels.push_back("Double speed (6 clock) / 双倍速: " + speed);
  if (answer.stepping == 'C') addFixedLabels(labels, answer.status13);
  return labels;
}

}  // namespace

TargetReport describeTarget(const ChipAnswer& answer) {
  TargetReport report;
  report.clearStartPair = answer.sizeUntold;
  if (!answer.modelName.empty()) report.lines.push_back("MCU Type is: " + answer.modelName);
  report.lines.push_back("MCU Firmware Version: " + versionAndLetter(answer));
  if (answer.stepping == 'A') {
    report.doubleSpeed = bit(answer.status13, 3);
    report.lines.emplace_back(*report.doubleSpeed ? "Double speed: Yes" : "Double speed: No");
  }
  if (answer.stepping == 'B') {
    report.doubleSpeed = false;
    report.lines.emplace_back("Double speed: Unknown");
  }
  if (const auto* traits = reportedAs(answer.stepping)) {
    const auto lines = rowLines(answer, *traits);
    report.lines.insert(report.lines.end(), lines.begin(), lines.end());
    report.labels = rowLabels(answer, lines);
  }
  if (answer.stepping >= 'A' && answer.stepping.firstGeneration()) report.labels = olderLabels(answer);
  return report;
}

}  // namespace kvr::options
