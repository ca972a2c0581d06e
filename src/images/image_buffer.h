// The images of the target's two memories, as the loaders fill them and the programming steps send them.
//
// A byte's index is its address in the file: the code image counts from code address 0, the data image from the start
// of the Data Memory. What no file wrote reads 0, and so does every address beyond the buffer's end.
#pragma once

#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "platform/signal.h"

namespace kvr::images {

inline constexpr std::int32_t kNoRangeStart = 0x10FFFF;  // `rangeStart` of a buffer that no file has been merged into
inline constexpr std::int32_t kCodeBufferSize = 0x12001;
inline constexpr std::int32_t kEepromBufferSize = 0x10001;

enum class ImageKind { Code, Data };

// Where the last file and all merged files lie. Addresses are inclusive.
struct ImageBounds {
  std::int32_t fileStart = 0;
  std::int32_t fileEnd = 1023;
  std::int32_t rangeStart = 0;  // lowest `fileStart` of the files merged; kNoRangeStart: none
  std::int32_t rangeEnd = 1023;
  bool operator==(const ImageBounds&) const = default;

  void mergeFile();                                    // the range takes in the last file
  void takeIn(std::int32_t first, std::int32_t last);  // the range takes in these addresses
};

// A file's bytes laid out by address, ready to be put over a buffer. All three have the same length.
struct FileLayer {
  std::vector<std::uint8_t> bytes;
  std::vector<std::uint8_t> written;  // not 0 where the file has a byte
};

class ImageBuffer : public ImageBounds {
 public:
  ImageBuffer(ImageKind kind, std::int32_t size);
  ImageBuffer(const ImageBuffer&) = delete;
  ImageBuffer& operator=(const ImageBuffer&) = delete;

  const ImageKind kind;
  std::int32_t sum = 0;  // sum of the last file's data bytes
  bool loaded = false;   // a load has ended; of the data image: there is data to program

  ImageBounds& bounds() { return *this; }
  const ImageBounds& bounds() const { return *this; }

  std::int32_t size() const { return static_cast<std::int32_t>(bytes_.size()); }
  std::span<const std::uint8_t> bytes() const { return bytes_; }
  std::uint8_t at(std::int32_t address) const;
  bool fileWrote(std::int32_t address) const { return marked(address, kFromFile); }  // some file put this byte here
  // By hand or by a counter, to another value than it had after the load. A load, a project and a clear begin anew; a
  // Save does not, since the file that is named and loaded again is still the old one.
  bool changedSinceLoad(std::int32_t address) const { return marked(address, kEdited); }
  // Neither a file, nor the user, nor a counter has put a byte here.
  bool gap(std::int32_t address) const { return !marked(address, kFromFile) && !marked(address, kEdited); }
  std::uint64_t basis() const { return basis_; }  // another number after each change that is no edit

  // The last address at which a file, the user or a counter put something that is not 0, also beyond the range; -1:
  // there is none.
  std::int32_t lastHeld() const;
  // The bytes with marks where a file, the user or a counter has put one.
  FileLayer held() const { return {.bytes = bytes_, .written = marks_}; }
  // How many bytes of its files were blanked since the last fill, because the model has no place for them.
  std::int64_t blanked() const { return blanked_; }

  // Each of these tells the observers once. Addresses outside the buffer are passed over.
  void fill(std::uint8_t value);                                         // every byte; forgets all marks
  void lay(const FileLayer& file);                                       // a file's bytes over what is there
  void blank(std::int32_t first, std::int32_t last);                     // zeros that no file wrote
  void edit(std::int32_t address, std::span<const std::uint8_t> bytes);  // marked as changed since the load
  void put(std::int32_t address, std::span<const std::uint8_t> bytes);   // as a file would
  void touch() const { changed.emit(); }                                 // bounds or flags were set directly

  platform::Signal changed;  // bytes, marks, bounds or flags

 private:
  enum Mark : std::uint8_t { kFromFile = 1, kEdited = 2 };
  bool marked(std::int32_t address, Mark mark) const;
  void settle();
  std::pair<std::size_t, std::size_t> clip(std::int64_t first, std::int64_t count) const;
  std::vector<std::uint8_t> bytes_;
  std::vector<std::uint8_t> marks_;
  std::vector<std::uint8_t> loaded_;  // the bytes without the edits
  std::uint64_t basis_ = 1;
  std::int64_t blanked_ = 0;
};

// Both images and what is known of them together. Lives as long as the window.
struct ImageState {
  ImageBuffer CodeBuffer{ImageKind::Code, kCodeBufferSize};
  ImageBuffer EepromBuffer{ImageKind::Data, kEepromBufferSize};
  bool imageValid = false;  // a loaded image exists (one flag for both)
  // A file or a project has filled the code image; `imageValid` alone may come from an EEPROM file.
  bool codeLoaded() const { return imageValid && CodeBuffer.loaded; }
};

}  // namespace kvr::images
