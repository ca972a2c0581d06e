#include "batches/chip_numbers.h"

#include <algorithm>
#include <sstream>

#include "platform/text.h"

namespace kvr::batches {
namespace {

constexpr const char* kRadixNames[] = {"hex", "bcd", "ascii"};  // in the order of `images::Radix`

const char* nameOf(images::ImageKind kind) {
  return kind == images::ImageKind::Code ? "code" : "data";
}

void put(engine::JobImage& image, const images::AutoIncrement& field, const std::vector<std::uint8_t>& bytes) {
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const std::int32_t at = field.field().first + static_cast<std::int32_t>(i);
    if (at < 0 || at >= std::ssize(image.bytes)) continue;
    image.bytes[static_cast<std::size_t>(at)] = bytes[i];
    if (bytes[i] != 0) image.heldEnd = std::max(image.heldEnd, at);
  }
  image.loaded = true;
  image.rangeStart = std::min(image.rangeStart, std::max(0, field.address - field.bytes));
  image.rangeEnd = std::max(image.rangeEnd, field.address);
}

// What the field holds for this number, in its full width; nothing when it has outgrown the field.
images::AutoValue valueOf(images::AutoIncrement field, std::int64_t number) {
  const auto tooBig = [&] {
    return images::AutoValue{{}, "The serial number " + std::to_string(number) + " does not fit its field."};
  };
  if (number < 0 || number > INT32_MAX) return tooBig();
  field.next = std::to_string(number);
  field.step = 0;
  field.next = images::advancedNext(field);
  if (platform::valueOf(field.next) != static_cast<double>(number)) return tooBig();
  return images::autoValue(field);
}

}  // namespace

std::string layoutText(const Layout& layout) {
  std::string text;
  for (const images::AutoIncrement& field : layout)
    text += (text.empty() ? "" : "; ") + std::string(nameOf(field.kind)) + " " +
            platform::hexText(static_cast<std::uint32_t>(field.address), 4) + " " + std::to_string(field.bytes) + " " +
            kRadixNames[static_cast<std::size_t>(field.radix)];
  return text;
}

Layout layoutOf(const std::string& text) {
  Layout layout;
  std::istringstream fields(text);
  for (std::string one; std::getline(fields, one, ';');) {
    std::istringstream words(one);
    std::string kind, address, radix;
    images::AutoIncrement field{.next = {}};
    if (!(words >> kind >> address >> field.bytes >> radix)) continue;
    field.kind = kind == "data" ? images::ImageKind::Data : images::ImageKind::Code;
    field.address = images::autoAddress(address);
    const auto name = std::find(std::begin(kRadixNames), std::end(kRadixNames), radix);
    field.radix = static_cast<images::Radix>(name == std::end(kRadixNames) ? 0 : name - std::begin(kRadixNames));
    layout.push_back(field);
  }
  return layout;
}

std::vector<records::Counter> countersOf(const Layout& layout) {
  std::vector<records::Counter> counters;
  for (const images::AutoIncrement& field : layout)
    counters.push_back({nameOf(field.kind), static_cast<std::int64_t>(platform::valueOf(field.next)), field.step});
  return counters;
}

std::string writeNumbers(engine::Job& job, const Layout& layout, const std::vector<std::int64_t>& numbers) {
  job.codeNumbers.clear();
  job.dataNumbers.clear();
  if (layout.size() != numbers.size()) return "The batch has no place for its serial number.";
  for (std::size_t i = 0; i < layout.size(); ++i) {
    const images::AutoIncrement& field = layout[i];
    if (std::string fault = images::checkAutoRange(field, job.record()); !fault.empty()) return fault;
    const images::AutoValue value = valueOf(field, numbers[i]);
    if (!value.fault.empty()) return value.fault;
    const bool isCode = field.kind == images::ImageKind::Code;
    put(isCode ? job.code : job.data, field, value.bytes);
    (isCode ? job.codeNumbers : job.dataNumbers).push_back(field.field());
  }
  return {};
}

}  // namespace kvr::batches
