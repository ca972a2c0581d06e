#include "images/image_facts.h"

#include <algorithm>

#include "images/file_scan.h"
#include "images/range_rules.h"
#include "platform/text.h"

namespace kvr::images {
namespace {

std::int64_t common(const AddressRange& a, const AddressRange& b) {
  return AddressRange{std::max(a.first, b.first), std::min(a.last, b.last)}.count();
}

std::int64_t commonOf(const std::vector<AddressRange>& ranges, const AddressRange& area) {
  std::int64_t count = 0;
  for (const AddressRange& range : ranges) count += common(range, area);
  return count;
}

// The first address that lies in neither area. The areas are in rising order.
std::int32_t firstOutside(const std::vector<AddressRange>& ranges, const AddressRange& a, const AddressRange& b) {
  for (const AddressRange& range : ranges) {
    std::int32_t at = range.first;
    for (const AddressRange& area : {a, b})
      if (area.holds(at)) at = area.last + 1;
    if (at <= range.last) return at;
  }
  return 0;
}

bool holds(const ImageFacts& facts, std::int32_t address) {
  return std::any_of(facts.ranges.begin(), facts.ranges.end(),
                     [&](const AddressRange& range) { return range.holds(address); });
}

}  // namespace

std::optional<FirstVector> jumpAt(std::span<const std::uint8_t> bytes, std::int32_t address) {
  const auto at = static_cast<std::size_t>(address);
  const auto byte = [&](std::size_t i) -> std::int32_t { return at + i < bytes.size() ? bytes[at + i] : 0; };
  if (at + 1 >= bytes.size()) return std::nullopt;
  const std::int32_t opcode = byte(0), next = address + 2;
  if (opcode == 0x02) return FirstVector{"LJMP", byte(1) * 256 + byte(2)};
  if (opcode == 0x80) return FirstVector{"SJMP", (next + (byte(1) ^ 0x80) - 0x80) & 0xFFFF};
  if ((opcode & 0x1F) == 0x01) return FirstVector{"AJMP", (next & 0xF800) | (opcode >> 5) * 256 | byte(1)};
  return std::nullopt;
}

std::vector<AddressRange> ImageFacts::gaps() const {
  std::vector<AddressRange> between;
  for (std::size_t i = 1; i < ranges.size(); ++i) between.push_back({ranges[i - 1].last + 1, ranges[i].first - 1});
  return between;
}

std::vector<AddressRange> markedRanges(std::span<const std::uint8_t> marks) {
  std::vector<AddressRange> ranges;
  for (std::size_t i = 0; i < marks.size(); ++i) {
    if (marks[i] == 0) continue;
    const auto at = static_cast<std::int32_t>(i);
    if (!ranges.empty() && ranges.back().last == at - 1)
      ranges.back().last = at;
    else
      ranges.push_back({at, at});
  }
  return ranges;
}

ImageFacts factsOf(const FileLayer& image) {
  ImageFacts facts{.ranges = markedRanges(image.written), .vector = {}};
  if (facts.empty()) return facts;
  for (const AddressRange& range : facts.ranges) facts.bytes += range.count();
  facts.firstByte = image.bytes[static_cast<std::size_t>(facts.first())];
  if (holds(facts, 0)) facts.vector = jumpAt(image.bytes, 0);
  facts.crc = crc32(std::span(image.bytes).first(static_cast<std::size_t>(facts.last()) + 1));
  return facts;
}

AreaFit fitOf(const ImageFacts& facts, const catalogue::SelectedModel& model, ImageKind kind) {
  const catalogue::McuRecord& record = model.record;
  const std::int32_t dataSize = record.dataEnd - record.dataStart + 1;
  const bool ownFile = !catalogue::isSelfWriting(record) && catalogue::hasDataFile(record);
  const AddressRange area = kind == ImageKind::Data ? AddressRange{0, dataSize - 1} : AddressRange{0, model.range.top};
  const bool follows = kind == ImageKind::Code && !ownFile && dataSize >= kUsableData;
  const std::int32_t dataStart = record.quirks.splitData ? 0x8000 : std::max(record.dataStart, area.last + 1);
  const AddressRange data = follows ? AddressRange{dataStart, record.dataEnd} : AddressRange{};
  AreaFit fit{.area = area.count(), .filled = commonOf(facts.ranges, area), .inData = commonOf(facts.ranges, data)};
  fit.beyond = facts.bytes - fit.filled - fit.inData;
  if (fit.beyond > 0) fit.beyondFrom = firstOutside(facts.ranges, area, data);
  return fit;
}

std::string sizeText(std::int64_t bytes) {
  if (bytes < 1024) return std::to_string(bytes) + (bytes == 1 ? " byte" : " bytes");
  std::string kilobytes = platform::fixedText(static_cast<double>(bytes) / 1024, 1);
  if (kilobytes.ends_with(".0")) kilobytes.resize(kilobytes.size() - 2);
  return kilobytes + " KB";
}

std::string addressText(std::int32_t address) {
  return platform::hexText(static_cast<std::uint32_t>(address), 4) + "H";
}

std::string rangeText(const AddressRange& range) {
  return addressText(range.first) + (range.last > range.first ? " - " + addressText(range.last) : "");
}

std::string rangesText(std::span<const AddressRange> ranges, std::size_t most) {
  std::string text;
  for (const AddressRange& range : ranges.first(std::min(most, ranges.size())))
    text += (text.empty() ? "" : ", ") + rangeText(range);
  return ranges.size() > most ? text + " and " + std::to_string(ranges.size() - most) + " more" : text;
}

std::string briefText(const ImageFacts& facts, const AreaFit& fit, ImageKind kind) {
  if (facts.empty()) return {};
  std::string text = sizeText(fit.filled) + " of " + sizeText(fit.area);
  if (fit.inData > 0) text += " · " + sizeText(fit.inData) + " of Data Memory";
  if (kind == ImageKind::Code)
    text += facts.vector ? " · vector " + addressText(facts.vector->target) : " · no jump at 0000H";
  return text + " · last " + addressText(facts.last());
}

std::vector<std::string> oddities(const ImageFacts& facts, ImageKind kind) {
  std::vector<std::string> lines;
  if (facts.empty()) return lines;
  if (facts.first() > 0) lines.push_back("Starts at " + addressText(facts.first()) + ", not at 0000H.");
  if (kind == ImageKind::Data) return lines;
  if (facts.firstByte == 0xFF || facts.firstByte == 0x00)
    lines.push_back("Begins with " + platform::hexText(facts.firstByte, 2) + ", as empty memory does.");
  if (facts.vector && !holds(facts, facts.vector->target))
    lines.push_back("The first jump leads to " + addressText(facts.vector->target) +
                    ", where the image holds nothing.");
  return lines;
}

std::string beyondText(const AreaFit& fit, const catalogue::SelectedModel& model) {
  if (fit.beyond == 0) return {};
  const std::string from = fit.beyondFrom > 0 ? " from " + addressText(fit.beyondFrom) + " on" : "";
  return "Larger than " + model.name() + ": " + sizeText(fit.beyond) + from + (fit.beyond == 1 ? " has" : " have") +
         " no place.";
}

}  // namespace kvr::images
