#include "images/file_facts.h"

#include <algorithm>

#include "images/range_rules.h"
#include "platform/text.h"

namespace kvr::images {
namespace {

std::string counted(std::int64_t number, std::string_view thing) {
  return std::to_string(number) + " " + std::string(thing) + (number == 1 ? "" : "s");
}

bool hasByte(const FileLayer& layer, std::size_t at) {
  return at < layer.written.size() && layer.written[at] != 0;
}

std::optional<Difference::Kind> differenceAt(const FileLayer& first, const FileLayer& second, std::size_t at) {
  const bool one = hasByte(first, at), two = hasByte(second, at);
  if (one && two && first.bytes[at] != second.bytes[at]) return Difference::Kind::Bytes;
  if (one == two) return std::nullopt;
  return one ? Difference::Kind::OnlyFirst : Difference::Kind::OnlySecond;
}

std::string bytesText(const FileLayer& layer, const AddressRange& range) {
  constexpr std::int64_t kShown = 4;
  std::string text;
  for (std::int32_t i = 0; i < std::min(kShown, range.count()); ++i)
    text += (i == 0 ? "" : " ") + platform::hexText(layer.bytes[static_cast<std::size_t>(range.first + i)], 2);
  return range.count() > kShown ? text + " .." : text;
}

std::string recordsText(const std::array<int, 256>& ofType) {
  std::string text;
  for (std::size_t type = 0; type < ofType.size(); ++type)
    if (ofType[type] > 0)
      text += (text.empty() ? "" : ", ") + std::to_string(ofType[type]) + " of type " + std::to_string(type);
  return text;
}

std::string firstText(const ImageFacts& image) {
  if (image.vector) return std::string(image.vector->mnemonic) + " " + addressText(image.vector->target);
  return image.first() == 0 ? "no jump" : "nothing at 0000H";
}

std::string gapsText(const ImageFacts& image) {
  const auto gaps = image.gaps();
  return gaps.empty() ? "none" : rangesText(gaps);
}

void appendRecord(platform::Bytes& out, std::int32_t address, std::uint8_t type, std::span<const std::uint8_t> data) {
  platform::Bytes record = {static_cast<std::uint8_t>(data.size()), static_cast<std::uint8_t>(address >> 8),
                            static_cast<std::uint8_t>(address), type};
  record.insert(record.end(), data.begin(), data.end());
  unsigned sum = 0;
  for (const std::uint8_t byte : record) sum += byte;
  record.push_back(static_cast<std::uint8_t>(0U - sum));
  std::string line = ":";
  for (const std::uint8_t byte : record) line += platform::hexText(byte, 2);
  line += '\n';
  out.insert(out.end(), line.begin(), line.end());
}

}  // namespace

FileFacts fileFacts(const std::string& path, const FileContent& content, std::int32_t start) {
  ImageFile file = scanImageFile(
      path, content, {.kind = ImageKind::Code, .start = start, .limit = kCodeBufferSize, .size = kCodeBufferSize});
  FileFacts facts{.path = path, .fault = file.fault, .format = file.choice.format};
  facts.layer = std::move(file.layer);
  facts.image = factsOf(facts.layer);
  facts.info = std::move(file.info);
  facts.sum = file.file.sum;
  facts.recordsOfType = file.hex.ofType;
  facts.badSums = file.hex.badSums;
  facts.overlaps = markedRanges(file.hex.overlaps);
  return facts;
}

std::vector<std::string> factLines(const FileFacts& facts, const catalogue::SelectedModel* model, ImageKind kind) {
  const ImageFacts& image = facts.image;
  const bool hex = facts.format == FileFormat::Hex;
  std::vector<std::string> lines = {
      "File:      " + facts.path + (hex ? ", Intel HEX, " : ", binary, ") +
          counted(static_cast<std::int64_t>(facts.info.size), "byte") + (facts.info.more ? " read" : ""),
      "CRC-32:    " + platform::hexText(facts.info.crc, 8) + " of the file, " + platform::hexText(image.crc, 8) +
          " of the image from 0000H to " + addressText(image.last()),
      "Check sum: " + sumDigits(facts.sum) + "H",
      "Data:      " + counted(image.bytes, "byte") + " in " + rangesText(image.ranges),
      "Gaps:      " + gapsText(image)};
  if (hex) lines.push_back("Records:   " + recordsText(facts.recordsOfType));
  if (!facts.overlaps.empty()) lines.push_back("Overlaps:  " + rangesText(facts.overlaps));
  if (kind == ImageKind::Code) lines.push_back("Start:     " + firstText(image));
  if (model == nullptr) return lines;
  const AreaFit fit = fitOf(image, *model, kind);
  lines.push_back("Fills:     " + sizeText(fit.filled) + " of " + sizeText(fit.area) + " of " + model->name() +
                  (fit.inData > 0 ? ", " + sizeText(fit.inData) + " of its Data Memory" : ""));
  return lines;
}

std::vector<std::string> warningLines(const FileFacts& facts, const catalogue::SelectedModel* model, ImageKind kind) {
  std::vector<std::string> lines = oddities(facts.image, kind);
  if (model != nullptr)
    if (const std::string beyond = beyondText(fitOf(facts.image, *model, kind), *model); !beyond.empty())
      lines.push_back(beyond);
  if (facts.badSums > 0) lines.push_back(counted(facts.badSums, "record") + " with a wrong check sum.");
  if (facts.info.missingEnd) lines.push_back("No end record: the file may be incomplete.");
  if (facts.info.extendedRecords > 0)
    lines.push_back(counted(facts.info.extendedRecords, "record") +
                    " of type 2 to 5, taken as data (no extended addressing).");
  if (facts.info.overlappingBytes > 0)
    lines.push_back(counted(facts.info.overlappingBytes, "byte") + " written more than once.");
  if (facts.info.droppedBytes > 0)
    lines.push_back(counted(facts.info.droppedBytes, "byte") + " beyond what any model holds.");
  return lines;
}

std::vector<Difference> differencesOf(const FileLayer& first, const FileLayer& second) {
  std::vector<Difference> found;
  const std::size_t size = std::max(first.written.size(), second.written.size());
  for (std::size_t i = 0; i < size; ++i) {
    const auto kind = differenceAt(first, second, i);
    if (!kind) continue;
    const auto at = static_cast<std::int32_t>(i);
    if (!found.empty() && found.back().kind == *kind && found.back().range.last == at - 1)
      found.back().range.last = at;
    else
      found.push_back({*kind, {at, at}});
  }
  return found;
}

std::string differenceText(const Difference& difference, const FileLayer& first, const FileLayer& second) {
  const AddressRange& range = difference.range;
  const std::string where = rangeText(range) + "  " + counted(range.count(), "byte") + " ";
  if (difference.kind == Difference::Kind::OnlyFirst) return where + "only in the first: " + bytesText(first, range);
  if (difference.kind == Difference::Kind::OnlySecond) return where + "only in the second: " + bytesText(second, range);
  return where + (range.count() == 1 ? "differs: " : "differ: ") + bytesText(first, range) + " | " +
         bytesText(second, range);
}

platform::Bytes asHex(const FileLayer& image) {
  constexpr std::int32_t kRecord = 16, kReach = 0x10000;
  platform::Bytes out;
  const auto ranges = markedRanges(image.written);
  if (!ranges.empty() && ranges.back().last >= kReach) return out;
  for (const AddressRange& range : ranges)
    for (std::int32_t at = range.first; at <= range.last; at = (at / kRecord + 1) * kRecord) {
      const std::int32_t last = std::min(range.last, (at / kRecord + 1) * kRecord - 1);
      appendRecord(
          out, at, 0,
          std::span(image.bytes).subspan(static_cast<std::size_t>(at), static_cast<std::size_t>(last - at + 1)));
    }
  appendRecord(out, 0, 1, {});
  return out;
}

platform::Bytes asBinary(const FileLayer& image, std::uint8_t fill) {
  const auto ranges = markedRanges(image.written);
  platform::Bytes out;
  if (ranges.empty()) return out;
  out.assign(static_cast<std::size_t>(ranges.back().last) + 1, fill);
  for (std::size_t i = 0; i < out.size(); ++i)
    if (image.written[i] != 0) out[i] = image.bytes[i];
  return out;
}

}  // namespace kvr::images
