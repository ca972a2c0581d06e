// HEX files and binaries. The first byte says where the file is placed.
#include <algorithm>
#include <numeric>

#include "images/file_scan.h"
#include "images/hex_scan.h"
#include "tests/fuzz/targets.h"

namespace kvr::fuzz {
namespace {

constexpr std::int32_t kLimit = 0x800;
constexpr std::int32_t kSize = 0x901;

std::string faultOfLayer(const images::FileLayer& layer) {
  if (layer.bytes.size() != kSize || layer.written.size() != kSize) return "a layer of another length";
  for (std::size_t i = 0; i < kSize; ++i)
    if (layer.bytes[i] != 0 && layer.written[i] == 0) return "a byte that no record wrote";
  return {};
}

std::int64_t sumOf(const Bytes& bytes) {
  return std::accumulate(bytes.begin(), bytes.end(), std::int64_t{0});
}

std::int64_t writtenIn(const images::FileLayer& layer) {
  return std::count_if(layer.written.begin(), layer.written.end(), [](std::uint8_t mark) { return mark != 0; });
}

}  // namespace

std::string faultOfHex(const Bytes& input) {
  if (input.empty()) return {};
  const Bytes file(input.begin() + 1, input.end());
  const images::HexScan scan = images::scanHex(file, input[0] * 8, kLimit, kSize);
  if (const std::string fault = faultOfLayer(scan.layer); !fault.empty()) return fault;
  for (std::size_t i = kLimit; i < kSize; ++i)
    if (scan.layer.written[i]) return "a byte at or above the limit";
  if (scan.badSums > scan.records || scan.badLines.size() > 3) return "more bad records than records";
  for (const std::string& line : scan.badLines)
    for (const char c : line)
      if (static_cast<unsigned char>(c) < ' ') return "a control character in a message";
  const bool plain = scan.overlappingBytes == 0 && scan.droppedBytes == 0 && scan.extendedRecords == 0;
  if (plain && scan.sum != sumOf(scan.layer.bytes)) return "the sum";
  Bytes ended = file;
  if (scan.endRecord) ended.insert(ended.end(), {'\n', ':', '0', '1', '0', '0', '0', '0', '0', '0', 'F', 'F'});
  if (images::scanHex(ended, input[0] * 8, kLimit, kSize).layer.bytes != scan.layer.bytes) return "read past its end";
  return {};
}

std::string faultOfBinary(const Bytes& input) {
  if (input.empty()) return {};
  const Bytes file(input.begin() + 1, input.end());
  const std::int32_t start = input[0] * 8;
  const images::BinaryScan scan = images::scanBinary(file, start, kSize);
  if (const std::string fault = faultOfLayer(scan.layer); !fault.empty()) return fault;
  const std::int64_t fits = std::min<std::int64_t>(static_cast<std::int64_t>(file.size()), kSize - start);
  if (writtenIn(scan.layer) != fits) return "another number of bytes";
  if (scan.droppedBytes != static_cast<std::int64_t>(file.size()) - fits) return "dropped bytes are counted wrong";
  if (!std::equal(file.begin(), file.begin() + fits, scan.layer.bytes.begin() + start)) return "other bytes";
  if (scan.sum != sumOf(scan.layer.bytes)) return "the sum";
  const auto format = images::chooseFormat("x", file);
  const bool colon = std::find(file.begin(), file.end(), ':') != file.end();
  return format.format == images::FileFormat::Hex && !colon ? "taken for HEX" : "";
}

}  // namespace kvr::fuzz
