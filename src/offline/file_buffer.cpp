#include "offline/file_buffer.h"

#include <algorithm>

namespace kvr::offline {
namespace {

constexpr int kSmallestLast = 1023;  // a board gives a chip at least its first kilobyte

// Copies `from` up to its byte `last` to the address `to`.
void copyImage(const ImageView& from, int last, int to, FileBuffer& file) {
  const int count = std::min({last + 1, static_cast<int>(from.bytes.size()), static_cast<int>(FileBuffer::kSize) - to});
  if (count > 0) std::copy_n(from.bytes.begin(), count, file.bytes.begin() + to);
}

}  // namespace

void FileBuffer::blank(std::int64_t start, std::int64_t count) {
  const auto end = static_cast<std::ptrdiff_t>(std::clamp<std::int64_t>(start + count, 0, kSize));
  const auto begin = static_cast<std::ptrdiff_t>(std::clamp<std::int64_t>(start, 0, end));
  std::fill(bytes.begin() + begin, bytes.begin() + end, std::uint8_t{0xFF});
}

int boardCodeLimit(const catalogue::McuRecord& record) {
  return sizeFor(record, traitsOf(record).boardImage) - 1;
}

FileBuffer prepareFileBuffer(const catalogue::McuRecord& record, const ImageView& code, const ImageView& data) {
  FileBuffer file;
  const int codeLast = std::max(code.rangeEnd, kSmallestLast);
  int copied = 0;
  if (traitsOf(record).firstGeneration() || !data.loaded) {
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
