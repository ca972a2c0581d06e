// An image file from its bytes to an image: read, scanned, laid over the buffer. Everything here is a value; the rooms
// ask the questions and show the results.
#pragma once

#include <optional>
#include <string>

#include "catalogue/selected_model.h"
#include "images/file_scan.h"
#include "images/range_rules.h"
#include "platform/file_system.h"

namespace kvr::images {

// Files are read up to this size; what follows is not looked at.
inline constexpr std::size_t kReadLimit = std::size_t{128} << 20;

// A file's bytes with what the system tells of it.
struct FileContent {
  platform::Bytes bytes;
  bool more = false;      // the file is longer than what is read
  std::string stamp;      // of before the read
  std::string changedAt;  // local date and time
  bool atRest = true;     // the stamp was the same after the read
};
// Nothing: the file cannot be read.
std::optional<FileContent> readContent(const platform::FileSystem& files, const std::string& path);

enum class FileFault { None, Unreadable, Empty, NoRecord, NoData };
std::string faultText(FileFault fault, const std::string& path);  // for a message box

// Where a file goes.
struct Placement {
  ImageKind kind = ImageKind::Code;
  std::int32_t start = 0;  // added to the file's addresses
  std::int32_t limit = 0;  // bytes of a HEX file at or above it are dropped
  std::int32_t size = 0;   // of the image
};

struct ImageFile {
  FileFault fault = FileFault::None;  // any other: the file is not taken
  FormatChoice choice;
  FileLayer layer;
  LoadedFile file;
  HexScan hex;  // without its layer; empty for a binary
  FileInfo info;
};
ImageFile scanImageFile(const std::string& path, const FileContent& content, const Placement& place);

// Lays the file over the buffer, merged with what is there or alone, and holds it against the model's memory.
RangeVerdict layFile(ImageBuffer& buffer, const ImageFile& file, bool merge, const catalogue::SelectedModel& model);

// The start address in a box; nothing: it is too big for any memory.
std::optional<std::int64_t> startAddress(std::string_view text);

// Where the code image comes from: what the caption names, what is watched, and what is loaded again. It changes only
// when a file has been taken.
struct CodeSource {
  enum class Kind { Nothing, File, Project };
  Kind kind = Kind::Nothing;
  std::string path;   // of a file, as are the rest
  std::string stamp;  // as it was when it was read
  FileFormat format = FileFormat::Binary;
  FileInfo info;
};

// Whether a new version of the file can be taken without the user looking at it: it holds something, was not written to
// while it was read, and has its end record when the file is HEX.
bool isWhole(const FileContent& content, const CodeSource& source);
// Whether it is the version that was taken before: its owner or rights may have changed, or a link to it was made.
bool isSameVersion(const FileContent& content, const CodeSource& source);

}  // namespace kvr::images
