// Takes a file into an image: with its questions and messages, captions and labels. A file that is refused changes
// nothing.
#pragma once

#include <string>

#include "images/image_file.h"
#include "images/serial_counters_room.h"

namespace kvr::images {

enum class LoadResult {
  Loaded,   // the image holds the file
  Refused,  // unreadable, empty, or not for this memory: nothing changed, and the user has been told
  Stopped,  // the answer was No: the image is empty
};

class Loader {
 public:
  Loader(platform::World& world, const catalogue::SelectedModel& selected, ImageSlots& slots, ImageState& state,
         BufferViews& views, SerialCounters& counters);

  LoadResult load(const std::string& path, ImageKind kind);
  // The same for a file that has been read already.
  LoadResult take(const std::string& path, const FileContent& content, ImageKind kind);

  // A file as `take` would lay it; nothing is changed. Nothing: it cannot be taken, and the user has been told.
  std::optional<ImageFile> read(const std::string& path, ImageSlot& slot);

  void clearBuffers();  // both images are empty, and nothing is in hand
  void showLengths();

  const CodeSource& source() const { return source_; }
  // The code image was filled by a project: there is no file to watch or to load again.
  void takeProject() { source_ = {.kind = CodeSource::Kind::Project}; }
  // Tells the user when the data image is one that no run will program.
  void tellIfNotProgrammed();

 private:
  std::optional<std::int64_t> startOf(ImageSlot& slot);
  std::optional<ImageFile> scan(const std::string& path, const FileContent& content, ImageSlot& slot);
  bool acceptBadSums(const std::string& path, const HexScan& scan);
  void lay(const ImageFile& file, ImageSlot& slot);
  void showTaken(const std::string& path, const FileContent& content, const ImageFile& file, ImageSlot& slot);
  void switchCountersOff();
  void clear(ImageSlot& slot);
  LoadResult refuse(FileFault fault, const std::string& path);
  platform::World& world_;
  const catalogue::SelectedModel& selected_;
  ImageSlots& slots_;
  ImageState& state_;
  BufferViews& views_;
  SerialCounters& counters_;
  CodeSource source_;
};

}  // namespace kvr::images
