#include "project/project_job.h"

#include <algorithm>
#include <array>

#include "options/option_table.h"
#include "platform/text.h"

namespace kvr::project {
namespace {

engine::JobImage imageOf(const platform::Bytes& bytes, std::int32_t sum) {
  const auto last = static_cast<std::int32_t>(bytes.size()) - 1;
  return {.bytes = bytes, .rangeStart = 0, .rangeEnd = last, .heldEnd = last, .loaded = true, .sum = sum};
}

// The entry of a list; the last one for a place outside it.
template <std::size_t N>
std::string entryAt(const std::array<std::string_view, N>& list, const std::string& index) {
  const auto at = static_cast<std::size_t>(std::max(platform::wholeOf(index), -1));
  return std::string(list[std::min(at, N - 1)]);
}

// A button's value: "True", or a number other than 0.
bool isChosen(const std::string& value) {
  return platform::upper(value) == "TRUE" || platform::wholeOf(value) != 0;
}

void choose(options::PanelValues& choices, const HeaderLine& line, const options::OptionRow& row) {
  if (row.key == options::kPrescalerKey) {
    choices.prescaler = entryAt(options::kPrescalers, line.value);
  } else if (row.key == options::kWakeUpKey) {
    choices.wakeUpDelay = entryAt(options::kWakeUpDelays, line.value);
  } else if (row.key == options::kLowVoltageKey) {
    choices.lowVoltageIndex = platform::wholeOf(line.value);
  } else if (options::isChoice(row)) {
    choices.choices[std::string(row.key)] = isChosen(line.value) ? "True" : "False";
  }
}

}  // namespace

engine::Job jobOf(const ProjectFile& project) {
  engine::Job job{.model = catalogue::describeModel(*catalogue::findByName(project.model)), .imageValid = true};
  const catalogue::FamilyTraits& traits = job.model.traits();
  job.code = imageOf(project.code, codeSumOf(project));
  if (project.data) job.data = imageOf(*project.data, dataSumOf(project));
  job.choices = options::defaultValues(job.record().family);
  job.choices.noOptions = job.record().noOptions;
  for (const HeaderLine& line : project.options) {
    if (line.key == "Double_speed_YES") job.doubleSpeed = isChosen(line.value);
    if (line.key == "New_ISP_f_NO" && isChosen(line.value)) job.baseFrequencyHz = 24000000;
    if (const options::OptionRow* row = options::findRow(traits.panelSlot, line.key)) choose(job.choices, line, *row);
  }
  job.frameSize = engine::frameSizeOf(job.record(), false);
  return job;
}

}  // namespace kvr::project
