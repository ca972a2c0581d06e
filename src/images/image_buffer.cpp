#include "images/image_buffer.h"

#include <algorithm>

namespace kvr::images {

void ImageBounds::mergeFile() {
  takeIn(fileStart, fileEnd);
}

void ImageBounds::takeIn(std::int32_t first, std::int32_t last) {
  rangeStart = std::min(rangeStart, first);
  rangeEnd = std::max(rangeEnd, last);
}

ImageBuffer::ImageBuffer(ImageKind ofKind, std::int32_t size)
    : kind(ofKind), bytes_(static_cast<std::size_t>(size)), marks_(static_cast<std::size_t>(size)), loaded_(bytes_) {}

std::uint8_t ImageBuffer::at(std::int32_t address) const {
  return address >= 0 && address < size() ? bytes_[static_cast<std::size_t>(address)] : 0;
}

bool ImageBuffer::marked(std::int32_t address, Mark mark) const {
  return address >= 0 && address < size() && (marks_[static_cast<std::size_t>(address)] & mark) != 0;
}

// The part of [first, first + count) that lies in the buffer, as begin and end index.
std::pair<std::size_t, std::size_t> ImageBuffer::clip(std::int64_t first, std::int64_t count) const {
  const std::int64_t end = std::clamp<std::int64_t>(first + count, 0, size());
  const std::int64_t begin = std::clamp<std::int64_t>(first, 0, end);
  return {static_cast<std::size_t>(begin), static_cast<std::size_t>(end)};
}

std::int32_t ImageBuffer::lastHeld() const {
  std::int32_t last = size() - 1;
  while (last >= 0 && (at(last) == 0 || marks_[static_cast<std::size_t>(last)] == 0)) --last;
  return last;
}

// What is there now is what later edits change.
void ImageBuffer::settle() {
  loaded_ = bytes_;
  ++basis_;
  touch();
}

void ImageBuffer::fill(std::uint8_t value) {
  std::fill(bytes_.begin(), bytes_.end(), value);
  std::fill(marks_.begin(), marks_.end(), std::uint8_t{0});
  blanked_ = 0;
  settle();
}

void ImageBuffer::lay(const FileLayer& file) {
  const std::size_t count = std::min({bytes_.size(), file.bytes.size(), file.written.size()});
  for (std::size_t i = 0; i < count; ++i) {
    if (file.written[i] != 0) bytes_[i] = file.bytes[i];
    if (file.written[i] != 0 || marks_[i] != 0) marks_[i] = kFromFile;  // edits are part of the image from now on
  }
  settle();
}

void ImageBuffer::blank(std::int32_t first, std::int32_t last) {
  const auto [begin, end] = clip(first, std::int64_t{last} - first + 1);
  for (std::size_t i = begin; i < end; ++i) blanked_ += marks_[i] != 0 && bytes_[i] != 0;
  std::fill(bytes_.begin() + static_cast<std::ptrdiff_t>(begin), bytes_.begin() + static_cast<std::ptrdiff_t>(end),
            std::uint8_t{0});
  std::fill(marks_.begin() + static_cast<std::ptrdiff_t>(begin), marks_.begin() + static_cast<std::ptrdiff_t>(end),
            std::uint8_t{0});
  settle();
}

void ImageBuffer::edit(std::int32_t address, std::span<const std::uint8_t> bytes) {
  const auto [begin, end] = clip(address, static_cast<std::int64_t>(bytes.size()));
  for (std::size_t i = begin; i < end; ++i) {
    const std::uint8_t value = bytes[static_cast<std::size_t>(static_cast<std::int64_t>(i) - address)];
    bytes_[i] = value;
    marks_[i] = static_cast<std::uint8_t>((marks_[i] & kFromFile) | (value == loaded_[i] ? 0 : kEdited));
  }
  touch();
}

void ImageBuffer::put(std::int32_t address, std::span<const std::uint8_t> bytes) {
  const auto [begin, end] = clip(address, static_cast<std::int64_t>(bytes.size()));
  for (std::size_t i = begin; i < end; ++i) {
    bytes_[i] = bytes[static_cast<std::size_t>(static_cast<std::int64_t>(i) - address)];
    marks_[i] = kFromFile;
  }
  settle();
}

}  // namespace kvr::images
