#include "offline/file_buffer.h"

#include <algorithm>

namespace kvr::offline {
namespace {

constexpr int kSmallestLast = 1023;  // a board gives a chip at least its first kilobyte
constexpr int kNoLimit = 65536;

// Copies `from` up to its byte `last` to the address `to`.
void copyImage(const ImageView& from, int last, int to, FileBuffer& file) {
  const int count = std::min({last + 1, static_cast<int>(from.bytes.size()), static_cast<int>(FileBuffer::kSize) - to});
  if (count > 0) std::copy_n(from.bytes.begin(), count, file.bytes.begin() + to);
}

bool firstGeneration(int family) {
  return family <= 2 || catalogue::isLateFamily(family);
}

}  // namespace

void FileBuffer::blank(std::int64_t start, std::int64_t count) {
  const std::int64_t end = std::clamp<std::int64_t>(start + count, 0, kSize);
  const std::int64_t begin = std::clamp<std::int64_t>(start, 0, end);
  std::fill(bytes.begin() + begin, bytes.begin() + end, std::uint8_t{0xFF});
}

int boardCodeLimit(const catalogue::McuRecord& record) {
  const bool top = record.topBlockFree;
  switch (record.family) {
    case 3:
      return 24063;
    case 4:
      return record.apEnd >= 15360 ? 28671 : 24063;
    case 5:
      return top ? 30719 : 28671;
    case 6:
    case 9:
      return top ? 6143 : 5119;
    case 7:
    case 10:
      return top ? 63487 : 62463;
    case 8:
    case 15:
    case 16:
    case 17:
      return top ? 14335 : 13311;
    case 18:
      return 0;
    default:
      return kNoLimit;
  }
}

FileBuffer prepareFileBuffer(const catalogue::McuRecord& record, const ImageView& code, const ImageView& data) {
  FileBuffer file;
  const int codeLast = std::max(code.rangeEnd, kSmallestLast);
  int copied = 0;
  if (firstGeneration(record.family) || !data.loaded) {
    const int limit = boardCodeLimit(record);
    file.first = std::min(code.rangeStart, limit);
    file.last = std::min(codeLast, limit);
    copied = file.last;
  } else if (data.rangeEnd < 1) {
    file.last = codeLast;
    copied = file.last;
  } else {
    file.last = record.apEnd + data.rangeEnd;
    file.data = {record.dataStart, record.dataStart + data.rangeEnd};
    copied = record.apEnd;
    copyImage(data, data.rangeEnd, record.dataStart, file);
  }
  copyImage(code, copied, 0, file);
  file.code = {0, std::min(code.rangeEnd, copied)};
  file.cut = code.rangeEnd - file.code.last;
  return file;
}

}  // namespace kvr::offline
