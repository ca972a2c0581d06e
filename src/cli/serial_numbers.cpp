#include "cli/serial_numbers.h"

#include "cli/checks.h"

#include <algorithm>

#include "engine/job.h"
#include "platform/text.h"

namespace kvr::cli {
namespace {

constexpr const char* kRadixNames[] = {"hex", "bcd", "ascii"};  // in the order of `images::Radix`

images::Radix radixOf(std::string_view name) {
  const auto found = std::find(std::begin(kRadixNames), std::end(kRadixNames), name);
  return static_cast<images::Radix>(found - std::begin(kRadixNames));
}

std::string valueOf(const project::Header& header, const std::string& key) {
  const project::HeaderLine* line = project::findLine(header, key);
  return line ? line->value : std::string();
}

bool isOn(const std::string& value) {
  return platform::upper(value) == "TRUE" || platform::wholeOf(value) != 0;
}

// The counter of a project: its keys are this head and what follows.
std::optional<images::AutoIncrement> counterOf(const project::Header& header, images::ImageKind kind) {
  const std::string head = kind == images::ImageKind::Code ? "Auto_Increase" : "Data_Increase";
  if (!isOn(valueOf(header, head + "_Enable"))) return std::nullopt;
  images::AutoIncrement counter{.kind = kind, .next = {}};
  images::takeTexts(counter, {valueOf(header, head + "_Address"), valueOf(header, head + "_Bytes"),
                              valueOf(header, head + "_Next"), valueOf(header, head)});
  counter.radix = isOn(valueOf(header, head + "_BCD"))     ? images::Radix::Bcd
                  : isOn(valueOf(header, head + "_ASCII")) ? images::Radix::Ascii
                                                           : images::Radix::Hex;
  return counter;
}

images::ImageBuffer& bufferOf(JobSource& source, images::ImageKind kind) {
  return kind == images::ImageKind::Code ? source.images.CodeBuffer : source.images.EepromBuffer;
}

}  // namespace

void SerialArguments::declare(CLI::App& app) {
  const std::string group = "Serial numbers";
  auto* at = app.add_option("--serial-at", at_, "Address of the number's last byte in the code")->type_name("HEX");
  auto* next = app.add_option("--serial-next", next_, "The first chip's number, decimal")->type_name("N");
  auto* step = app.add_option("--serial-step", step_, "Added after each good chip (1)")->type_name("N");
  auto* width = app.add_option("--serial-width", width_, "Bytes that the number takes (4)")->type_name("N");
  auto* radix = app.add_option("--serial-radix", radix_, "How it is written (hex)")
                    ->check(quiet(CLI::IsMember({"hex", "bcd", "ascii"})))
                    ->type_name("hex|bcd|ascii");
  for (CLI::Option* option : {at, next, step, width, radix}) option->group(group);
}

// What the command line says goes before what the project says.
Problem SerialArguments::given(images::AutoIncrement& counter) const {
  if (!at_.empty()) counter.address = images::autoAddress(at_);
  if (!next_.empty()) counter.next = next_;
  if (step_) counter.step = *step_;
  if (width_) counter.bytes = *width_;
  if (!radix_.empty()) counter.radix = radixOf(radix_);
  if (!counter.next.empty()) return {};
  return {ExitCode::WrongUse, "The serial number has no first value.", "Say it with --serial-next."};
}

Problem SerialArguments::counters(const JobSource& source, bool yes, std::vector<images::AutoIncrement>& found) const {
  for (const auto kind : {images::ImageKind::Code, images::ImageKind::Data})
    if (const auto counter = counterOf(source.project.general, kind)) found.push_back(*counter);
  if (!found.empty() && next_.empty() && !yes)
    return {ExitCode::File, "The project counts serial numbers. Its next one is " + found.front().next + ".",
            "Say --serial-next N with the number of the next chip, or --yes to begin with the project's."};
  const bool ofCode = !found.empty() && found.front().kind == images::ImageKind::Code;
  if (ofCode) return given(found.front());
  if (at_.empty() && (!next_.empty() || step_ || width_ || !radix_.empty()))
    return {ExitCode::WrongUse, "There is no place for the serial number.", "Say it with --serial-at."};
  if (at_.empty()) return {};
  images::AutoIncrement counter{.bytes = 4, .next = {}, .step = 1, .radix = images::Radix::Hex};
  const Problem problem = given(counter);
  found.insert(found.begin(), counter);
  return problem;
}

Problem SerialArguments::ofBatch(const JobSource& source, std::vector<images::AutoIncrement>& found) const {
  if (!at_.empty() || !next_.empty() || step_ || width_ || !radix_.empty())
    return {ExitCode::WrongUse, "The batch gives the serial numbers.", "Leave the arguments --serial-... away."};
  for (const auto kind : {images::ImageKind::Code, images::ImageKind::Data})
    if (const auto counter = counterOf(source.project.general, kind)) found.push_back(*counter);
  return {};
}

Problem SerialNumbers::check(const catalogue::McuRecord& model) const {
  for (const images::AutoIncrement& counter : counters_) {
    std::string fault = images::checkAutoRange(counter, model);
    if (fault.empty()) fault = images::autoValue(counter).fault;
    if (fault.empty() && counter.kind == images::ImageKind::Data && !catalogue::dataFileIsProgrammed(model))
      fault = catalogue::kDataFileNotProgrammed;
    if (!fault.empty()) return {ExitCode::Refused, fault, "Change --serial-at, --serial-next or --serial-width."};
  }
  return {};
}

void SerialNumbers::write(JobSource& source) const {
  source.job.codeNumbers.clear();
  source.job.dataNumbers.clear();
  for (const images::AutoIncrement& counter : counters_) {
    images::ImageBuffer& buffer = bufferOf(source, counter.kind);
    buffer.edit(counter.field().first, images::autoValue(counter).bytes);
    buffer.loaded = true;
    buffer.takeIn(std::max(0, counter.address - counter.bytes), counter.address);
    const bool isCode = counter.kind == images::ImageKind::Code;
    (isCode ? source.job.code : source.job.data) = engine::imageOf(buffer);
    (isCode ? source.job.codeNumbers : source.job.dataNumbers).push_back(counter.field());
  }
}

Problem SerialNumbers::start(JobSource& source, std::vector<images::AutoIncrement> counters) {
  counters_ = std::move(counters);
  if (Problem problem = check(source.job.record())) return problem;
  write(source);
  return {};
}

Problem SerialNumbers::advance(JobSource& source) {
  for (images::AutoIncrement& counter : counters_) counter.next = images::advancedNext(counter);
  if (Problem problem = check(source.job.record())) return problem;
  write(source);
  return {};
}

std::string SerialNumbers::inHand() const {
  std::string text;
  for (const images::AutoIncrement& counter : counters_) text += (text.empty() ? "" : "/") + counter.next;
  return text;
}

Problem OwnNumbering::start(JobSource& source) {
  std::vector<images::AutoIncrement> counters;
  if (Problem problem = arguments_.counters(source, yes_, counters)) return problem;
  return numbers_.start(source, std::move(counters));
}

Problem OwnNumbering::next(JobSource& source) {
  Problem problem = numbers_.advance(source);
  const std::string next = numbers_.inHand();
  if (!next.empty()) out_.result("serial", {{"next", next}}, "Next serial number: " + next);
  return problem;
}

}  // namespace kvr::cli
