#include "cli/job_source.h"

#include <algorithm>
#include <sstream>

#include "catalogue/mcu_record.h"
#include "options/option_words.h"
#include "platform/nearest.h"
#include "platform/text.h"
#include "project/project_job.h"

namespace kvr::cli {
namespace {

constexpr std::size_t kLargestProject = 4 << 20;  // both images in hexadecimal take a tenth of it
constexpr const char* kYes = "Say --yes to go on all the same.";

Problem wrongUse(std::string why, std::string next = {}) {
  return {ExitCode::WrongUse, std::move(why), std::move(next)};
}

platform::Bytes keptOf(const images::ImageBuffer& buffer) {
  const auto count = std::clamp<std::int32_t>(buffer.rangeEnd + 1, 1, buffer.size());
  const auto kept = buffer.bytes().first(static_cast<std::size_t>(count));
  return {kept.begin(), kept.end()};
}

void place(images::ImageBuffer& buffer, const platform::Bytes& bytes, std::int32_t sum) {
  buffer.put(0, bytes);
  buffer.rangeStart = 0;
  buffer.rangeEnd = buffer.fileEnd = static_cast<std::int32_t>(bytes.size()) - 1;
  buffer.sum = sum;
  buffer.loaded = true;
}

// A box's text as one line, without the word that its button answers.
std::string sentence(const std::string& text) {
  std::istringstream words(text);
  std::string line;
  for (std::string word; words >> word;) line += (line.empty() ? "" : " ") + word;
  constexpr std::string_view kButton = " Continue";
  if (line.ends_with(kButton)) line.resize(line.size() - kButton.size());
  return line;
}

}  // namespace

Problem findModel(const std::string& name, const catalogue::McuRecord*& model) {
  model = catalogue::findByName(name);
  if (model) return {};
  std::vector<std::string> names;
  for (const catalogue::McuRecord& row : catalogue::allRows()) {
    if (platform::upper(row.name) == platform::upper(name)) {
      model = catalogue::findByName(row.name);
      return {};
    }
    names.emplace_back(row.name);
  }
  const std::string near = platform::joinedByOr(platform::nearestNames(name, names));
  return wrongUse(
      "There is no model \"" + name + "\".",
      near.empty() ? "`kvr models` lists them." : "Did you mean " + near + "? `kvr models` lists them all.");
}

Problem JobMaker::make(JobSource& source) {
  if (arguments_.model.empty() && arguments_.project.empty())
    return wrongUse("Name the chip with --model, or a project with --project.");
  Problem problem = arguments_.project.empty() ? fromFiles(source) : fromProject(source);
  if (problem) return problem;
  if (problem = setOptions(source); problem) return problem;
  settle(source);
  return {};
}

// What a window would ask, or warn of in a box.
Problem JobMaker::question(std::string why, JobSource& source) const {
  if (!arguments_.yes) return {ExitCode::File, std::move(why), kYes};
  source.remarks.push_back(std::move(why));
  return {};
}

Problem JobMaker::fromProject(JobSource& source) {
  const auto file = files_.read(arguments_.project, kLargestProject);
  if (!file) return {ExitCode::File, "The project file cannot be read: " + arguments_.project, {}};
  project::ReadProject read = project::readProject(*file, codec_);
  if (!read.refusal.empty()) return {ExitCode::File, arguments_.project + ": " + read.refusal, {}};
  if (!read.codeSound) return {ExitCode::File, "The check sum of code file is incorrect.", {}};
  if (read.project.data && !read.dataSound) return {ExitCode::File, "The check sum of EEPROM file is incorrect.", {}};
  if (read.old)
    if (Problem asked = question("This is an old project file. Check each of its options.", source)) return asked;
  if (read.dataMissing)
    if (Problem asked = question("The project file names an EEPROM file, but does not hold its data.", source))
      return asked;
  source.project = std::move(read.project);
  place(source.images.CodeBuffer, source.project.code, codeSumOf(source.project));
  if (source.project.data) place(source.images.EepromBuffer, *source.project.data, dataSumOf(source.project));
  return {};
}

Problem JobMaker::fromFiles(JobSource& source) {
  const catalogue::McuRecord* model = nullptr;
  if (Problem problem = findModel(arguments_.model, model)) return problem;
  if (arguments_.code.empty()) return wrongUse("Name the code file.");
  source.project.model = model->name;
  source.project.options = project::freshOptions(*model);
  images::ImageState& state = source.images;
  if (Problem problem = loadFile(arguments_.code, arguments_.codeAt, state.CodeBuffer, source.code, source))
    return problem;
  source.project.code = keptOf(state.CodeBuffer);
  if (arguments_.data.empty()) return {};
  if (!catalogue::hasDataFile(*model)) return wrongUse(source.project.model + " takes no data file.");
  if (Problem problem = loadFile(arguments_.data, arguments_.dataAt, state.EepromBuffer, source.data, source))
    return problem;
  source.project.data = keptOf(state.EepromBuffer);
  return catalogue::dataFileIsProgrammed(*model) ? Problem()
                                                 : question(std::string(catalogue::kDataFileNotProgrammed), source);
}

Problem JobMaker::loadFile(const std::string& path, const std::string& at, images::ImageBuffer& buffer,
                           images::ImageFile& file, JobSource& source) {
  const catalogue::SelectedModel model = catalogue::describeModel(*catalogue::findByName(source.project.model));
  const auto start = images::startAddress(at);
  if (const std::string fault = images::checkStart(model.record, buffer.kind, start.value_or(INT64_MAX));
      !fault.empty())
    return wrongUse(fault);
  const auto content = images::readContent(files_, path);
  if (!content) return {ExitCode::File, images::faultText(images::FileFault::Unreadable, path), {}};
  file = images::scanImageFile(path, *content,
                               {.kind = buffer.kind,
                                .start = static_cast<std::int32_t>(*start),
                                .limit = model.record.bootEnd + 1,
                                .size = buffer.size()});
  if (file.fault != images::FileFault::None) return {ExitCode::File, images::faultText(file.fault, path), {}};
  if (!file.hex.badLines.empty())
    if (Problem asked = question(path + ": the checksum is incorrect:\n" + file.hex.badLines.front(), source))
      return asked;
  const images::RangeVerdict verdict = images::layFile(buffer, file, false, model);
  for (const std::string& text : verdict.messages)
    if (Problem asked = question(path + ": " + sentence(text), source)) return asked;
  buffer.mergeFile();
  source.images.imageValid = buffer.loaded = true;
  return {};
}

// An option that the file has already is given its new value in its place.
Problem JobMaker::setOptions(JobSource& source) const {
  const catalogue::McuRecord& model = *catalogue::findByName(source.project.model);
  const options::ReadWords read = options::readOptionWords(model, arguments_.options);
  if (!read.fault.empty()) return wrongUse(read.fault, "`kvr options " + source.project.model + "` lists them.");
  project::Header& kept = source.project.options;
  for (const options::OptionLine& line : read.lines) {
    const auto old = std::find_if(kept.begin(), kept.end(), [&](const auto& each) { return each.key == line.key; });
    if (old == kept.end())
      kept.push_back({line.key, line.value});
    else
      old->value = line.value;
  }
  source.remarks.insert(source.remarks.end(), read.notes.begin(), read.notes.end());
  return {};
}

// What a project does not keep, and the images as the files have filled them.
void JobMaker::settle(JobSource& source) const {
  engine::Job& job = source.job;
  job = project::jobOf(source.project);
  job.code = engine::imageOf(source.images.CodeBuffer);
  job.data = engine::imageOf(source.images.EepromBuffer);
  arguments_.setLine(job);
  job.choices.trimBand = std::min(arguments_.trim[0], 3);
  job.choices.trimStep = std::min(arguments_.trim[1], 63);
  job.choices.trimFine = arguments_.trim[2];
  const double hz = arguments_.megahertz.value_or(0) * 1e6;
  job.wantedFrequencyHz = static_cast<std::int32_t>(platform::roundEven(std::clamp(hz, 0.0, 2e9)));
}

}  // namespace kvr::cli
