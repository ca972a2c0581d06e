#include "cli/project_of.h"

#include <algorithm>

#include "images/range_rules.h"
#include "options/option_table.h"
#include "platform/text.h"

namespace kvr::cli {
namespace {

// What a fresh window has in the boxes of its counters.
constexpr std::pair<std::string_view, std::string_view> kFreshCounter[] = {
    {"_Enable", "0"}, {"_Address", "FFFF"}, {"_Bytes", "8"}, {"_Next", "0000"}, {"", "1"}, {"_BCD", "True"}};

std::string freshValue(const options::OptionRow& row) {
  for (const std::string_view head : {"Auto_Increase", "Data_Increase"})
    for (const auto& [tail, value] : kFreshCounter)
      if (row.key == std::string(head) + std::string(tail)) return std::string(value);
  if (row.key == "File_Name") return "Program File: ";
  if (row.key == "Dtat_File_Name") return "Data File: ";
  return row.property == "Value" ? "False" : "";
}

// The keys of the window's general lines, in its order, with a value for those that have one.
class General {
 public:
  explicit General(const project::Header& known) {
    for (const options::OptionRow& row : options::optionRows(options::kCommonSlot)) {
      if (row.key == project::kModelKey) continue;
      const project::HeaderLine* line = project::findLine(known, row.key);
      lines_.push_back({std::string(row.key), line != nullptr ? line->value : freshValue(row)});
    }
  }
  void set(const std::string& key, const std::string& value) {
    const auto line = std::find_if(lines_.begin(), lines_.end(), [&](const auto& each) { return each.key == key; });
    if (line != lines_.end()) line->value = value;
  }
  project::Header take() { return std::move(lines_); }

 private:
  project::Header lines_;
};

void setFile(General& general, const char* nameKey, const char* sumKey, const std::string& name, std::int64_t sum) {
  general.set(nameKey, name);
  general.set(sumKey, images::sumDigits(sum) + "H");
}

void setCounter(General& general, const images::AutoIncrement& counter) {
  const std::string head = counter.kind == images::ImageKind::Code ? "Auto_Increase" : "Data_Increase";
  general.set(head + "_Enable", "1");
  general.set(head + "_Address", platform::hexText(static_cast<std::uint32_t>(counter.address), 4));
  general.set(head + "_Bytes", std::to_string(counter.bytes));
  general.set(head + "_Next", counter.next);
  general.set(head, std::to_string(counter.step));
  constexpr const char* kRadixKeys[] = {"_HEX", "_BCD", "_ASCII"};
  for (std::size_t i = 0; i < std::size(kRadixKeys); ++i)
    general.set(head + kRadixKeys[i], i == static_cast<std::size_t>(counter.radix) ? "True" : "False");
}

}  // namespace

project::ProjectFile projectOf(const JobSource& source, const JobArguments& arguments,
                               const std::vector<images::AutoIncrement>& counters, const platform::FileSystem& files) {
  project::ProjectFile project = source.project;
  General general(project.general);
  if (!arguments.code.empty())
    setFile(general, "File_Name", "File_Check_Sum", "Program File: " + files.absolute(arguments.code),
            source.images.CodeBuffer.sum);
  if (!arguments.data.empty())
    setFile(general, "Dtat_File_Name", "Dtat_File_CheckSum", "Data File: " + files.absolute(arguments.data),
            source.images.EepromBuffer.sum);
  for (const images::AutoIncrement& counter : counters) setCounter(general, counter);
  project.general = general.take();
  return project;
}

}  // namespace kvr::cli
