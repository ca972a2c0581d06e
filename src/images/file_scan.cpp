#include "images/file_scan.h"

#include <algorithm>
#include <array>
#include <initializer_list>

#include "platform/text.h"

namespace kvr::images {
namespace {

// Eight tables let the sum take eight bytes a step; a 100 MB file must not hold the window up.
using CrcTables = std::array<std::array<std::uint32_t, 256>, 8>;
constexpr CrcTables makeCrcTables() {
  CrcTables tables{};
  for (std::uint32_t i = 0; i < 256; ++i) {
    std::uint32_t crc = i;
    for (int bit = 0; bit < 8; ++bit) crc = (crc & 1) != 0 ? crc >> 1 ^ 0xEDB88320U : crc >> 1;
    tables[0][i] = crc;
  }
  for (std::uint32_t i = 0; i < 256; ++i)
    for (std::size_t t = 1; t < 8; ++t) tables[t][i] = tables[t - 1][i] >> 8 ^ tables[0][tables[t - 1][i] & 0xFF];
  return tables;
}
constexpr CrcTables kCrc = makeCrcTables();

std::string count(std::int64_t number, const char* one, const char* many) {
  return std::to_string(number) + " " + (number == 1 ? one : many);
}

// "fw.hex" and "fw.hex.txt" are HEX by name; "fw.hex.bin" is what its last ending says.
bool nameHas(std::string_view path, std::string_view ending, std::initializer_list<std::string_view> others) {
  const std::string name = platform::upper(fileNameOf(path));
  return name.find(ending) != std::string::npos &&
         std::none_of(others.begin(), others.end(), [&](std::string_view other) { return name.ends_with(other); });
}

}  // namespace

std::string_view fileNameOf(std::string_view path) {
  return path.substr(path.find_last_of("/\\") + 1);
}

bool isProjectPath(std::string_view path) {
  return nameHas(path, ".KVR", {".BIN", ".HEX"});
}

FormatChoice chooseFormat(std::string_view path, std::span<const std::uint8_t> bytes) {
  if (nameHas(path, ".HEX", {".BIN"})) return {FileFormat::Hex, true};
  std::string_view rest(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  if (rest.starts_with("\xEF\xBB\xBF")) rest.remove_prefix(3);
  if (!rest.starts_with(":")) return {FileFormat::Binary, true};
  for (int line = 2; line <= 3; ++line) {
    const std::size_t end = rest.find_first_of("\r\n");
    if (end == std::string_view::npos) break;
    rest.remove_prefix(rest[end] == '\r' && rest.substr(end + 1).starts_with("\n") ? end + 2 : end + 1);
    if (rest.empty()) break;
    if (!rest.starts_with(":")) return {FileFormat::Binary, false};
  }
  return {FileFormat::Hex, false};
}

BinaryScan scanBinary(std::span<const std::uint8_t> bytes, std::int32_t startOffset, std::int32_t size) {
  BinaryScan scan;
  scan.fileStart = startOffset < 0 ? startOffset + 65536 : startOffset;
  const std::int32_t start = std::clamp(scan.fileStart, 0, size);
  const auto kept = std::min(bytes.size(), static_cast<std::size_t>(size - start));
  scan.layer.bytes.resize(static_cast<std::size_t>(size));
  scan.layer.written.resize(static_cast<std::size_t>(size));
  std::copy_n(bytes.begin(), kept, scan.layer.bytes.begin() + start);
  std::fill_n(scan.layer.written.begin() + start, kept, std::uint8_t{1});
  for (const std::uint8_t byte : bytes.first(kept)) scan.sum += byte;
  scan.fileEnd = std::max(511, start + static_cast<std::int32_t>(kept) - 1);
  scan.droppedBytes = static_cast<std::int64_t>(bytes.size() - kept);
  return scan;
}

std::uint32_t crc32(std::span<const std::uint8_t> bytes) {
  std::uint32_t crc = 0xFFFFFFFFU;
  std::size_t i = 0;
  for (; i + 8 <= bytes.size(); i += 8) {
    const std::uint8_t* p = bytes.data() + i;
    crc ^= static_cast<std::uint32_t>(p[0] | p[1] << 8 | p[2] << 16) | static_cast<std::uint32_t>(p[3]) << 24;
    crc = kCrc[7][crc & 0xFF] ^ kCrc[6][crc >> 8 & 0xFF] ^ kCrc[5][crc >> 16 & 0xFF] ^ kCrc[4][crc >> 24] ^
          kCrc[3][p[4]] ^ kCrc[2][p[5]] ^ kCrc[1][p[6]] ^ kCrc[0][p[7]];
  }
  for (; i < bytes.size(); ++i) crc = kCrc[0][(crc ^ bytes[i]) & 0xFF] ^ crc >> 8;
  return ~crc;
}

std::string infoText(const FileInfo& info) {
  std::string text = "Size: " + std::to_string(info.size) + " bytes" + (info.more ? " read, the file is longer" : "") +
                     "   CRC-32: " + platform::hexText(info.crc, 8);
  if (!info.changedAt.empty()) text += "   Changed: " + info.changedAt;
  if (info.missingEnd) text += "\nNote: the HEX file has no end record; it may be incomplete.";
  if (info.extendedRecords > 0)
    text += "\nNote: " + count(info.extendedRecords, "record", "records") +
            " of type 2 to 5, taken as data (no extended addressing).";
  if (info.overlappingBytes > 0)
    text += "\nNote: " + count(info.overlappingBytes, "byte is", "bytes are") + " written more than once.";
  if (info.droppedBytes > 0)
    text += "\nNote: " + count(info.droppedBytes, "byte lies", "bytes lie") + " beyond the memory and " +
            (info.droppedBytes == 1 ? "is" : "are") + " not loaded.";
  return text;
}

}  // namespace kvr::images
