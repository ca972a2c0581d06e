#include "images/image_file.h"

#include <algorithm>
#include <cctype>

#include "platform/text.h"

namespace kvr::images {
namespace {

void placeHex(ImageFile& result, std::span<const std::uint8_t> bytes, const Placement& place) {
  result.hex = scanHex(bytes, place.start, place.limit, place.size);
  result.layer = std::move(result.hex.layer);
  result.file.fileStart = place.start;
  result.file.fileEnd = std::max(511, result.hex.maxAddr);
  result.file.sum = result.hex.sum;
  result.info.extendedRecords = result.hex.extendedRecords;
  result.info.overlappingBytes = result.hex.overlappingBytes;
  result.info.droppedBytes = result.hex.droppedBytes;
  result.info.missingEnd = !result.hex.endRecord;
  if (result.hex.records == 0) result.fault = FileFault::NoRecord;
}

void placeBinary(ImageFile& result, std::span<const std::uint8_t> bytes, const Placement& place) {
  BinaryScan scan = scanBinary(bytes, place.start, place.size);
  result.layer = std::move(scan.layer);
  result.file.fileStart = scan.fileStart;
  result.file.fileEnd = scan.fileEnd;
  result.file.sum = scan.sum;
  result.info.droppedBytes = scan.droppedBytes;
}

}  // namespace

std::optional<FileContent> readContent(const platform::FileSystem& files, const std::string& path) {
  FileContent content;
  content.stamp = files.stamp(path).value_or("");
  content.changedAt = files.changedAt(path);
  auto bytes = files.read(path, kReadLimit + 1);
  if (!bytes) return std::nullopt;
  content.bytes = std::move(*bytes);
  content.more = content.bytes.size() > kReadLimit;
  content.bytes.resize(std::min(content.bytes.size(), kReadLimit));
  content.atRest = files.stamp(path).value_or("") == content.stamp;
  return content;
}

std::string faultText(FileFault fault, const std::string& path) {
  switch (fault) {
    case FileFault::None:
      break;
    case FileFault::Unreadable:
      return "The file cannot be read: " + path;
    case FileFault::Empty:
      return "The file is empty: " + path;
    case FileFault::NoRecord:
      return "No line of the file is a HEX record: " + path;
    case FileFault::NoData:
      return "The file holds no data for the memory of this MCU: " + path;
  }
  return {};
}

ImageFile scanImageFile(const std::string& path, const FileContent& content, const Placement& place) {
  ImageFile result;
  result.info.size = content.bytes.size();
  result.info.more = content.more;
  result.info.crc = crc32(content.bytes);
  result.info.changedAt = content.changedAt;
  result.choice = chooseFormat(path, content.bytes);
  result.file.format = result.choice.format;
  result.file.kind = place.kind;
  if (result.choice.format == FileFormat::Hex)
    placeHex(result, content.bytes, place);
  else
    placeBinary(result, content.bytes, place);
  const auto& written = result.layer.written;
  if (content.bytes.empty())
    result.fault = FileFault::Empty;
  else if (result.fault == FileFault::None &&
           std::all_of(written.begin(), written.end(), [](std::uint8_t mark) { return mark == 0; }))
    result.fault = FileFault::NoData;
  return result;
}

RangeVerdict layFile(ImageBuffer& buffer, const ImageFile& file, bool merge, const catalogue::SelectedModel& model) {
  if (merge) {
    buffer.mergeFile();
  } else {
    buffer.bounds() = {.fileStart = kNoRangeStart, .fileEnd = 0, .rangeStart = kNoRangeStart, .rangeEnd = 0};
    buffer.fill(0);
  }
  buffer.fileStart = file.file.fileStart;
  buffer.sum = static_cast<std::int32_t>(file.file.sum);
  buffer.lay(file.layer);
  RangeVerdict verdict = judgeRange(model.record, model.range, file.file, buffer.bytes());
  buffer.fileEnd = verdict.fileEnd;
  for (const catalogue::AddressRange& range : verdict.cleared) buffer.blank(range.first, range.last);
  return verdict;
}

std::optional<std::int64_t> startAddress(std::string_view text) {
  const auto isDigit = [](char c) { return std::isxdigit(static_cast<unsigned char>(c)) != 0; };
  std::string digits = platform::trim(text);
  digits.erase(std::find_if_not(digits.begin(), digits.end(), isDigit), digits.end());
  digits.erase(0, std::min(digits.find_first_not_of('0'), digits.size()));
  if (digits.size() > 8) return std::nullopt;
  return platform::hexOf(digits);
}

bool isWhole(const FileContent& content, const CodeSource& source) {
  if (content.bytes.empty() || !content.atRest) return false;
  // What was HEX stays HEX: the beginnings of one, or the zeros of space set aside for it, can look like a binary.
  const bool isHex =
      source.format == FileFormat::Hex || chooseFormat(source.path, content.bytes).format == FileFormat::Hex;
  return !isHex || scanHex(content.bytes, 0, 0, 0).endRecord;
}

bool isSameVersion(const FileContent& content, const CodeSource& source) {
  return content.changedAt == source.info.changedAt && content.bytes.size() == source.info.size &&
         content.more == source.info.more && crc32(content.bytes) == source.info.crc;
}

}  // namespace kvr::images
