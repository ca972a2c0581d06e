// HEX files. The first byte says where the file is placed.
#include <algorithm>
#include <numeric>

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

}  // namespace kvr::fuzz
