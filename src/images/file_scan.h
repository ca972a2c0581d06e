// What kind of file it is, what a plain binary holds, and what the user wants to know of any file.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "images/hex_scan.h"

namespace kvr::images {

// The part of a path after its folders.
std::string_view fileNameOf(std::string_view path);
// A project by the file's own name: the folders of the path say nothing about it.
bool isProjectPath(std::string_view path);

enum class FileFormat { Hex, Binary };

struct FormatChoice {
  FileFormat format = FileFormat::Binary;
  bool showEnd = true;  // settled by the name or the first line: the view goes to the image's end
  bool operator==(const FormatChoice&) const = default;
};
// HEX by the file's own name, or when the first three lines (as far as there are any) all begin with ':'.
FormatChoice chooseFormat(std::string_view path, std::span<const std::uint8_t> bytes);

struct BinaryScan {
  FileLayer layer;
  std::int64_t sum = 0;  // of the bytes that fit
  std::int32_t fileStart = 0;
  std::int32_t fileEnd = 511;  // last address written, at least 511
  std::int64_t droppedBytes = 0;
};
BinaryScan scanBinary(std::span<const std::uint8_t> bytes, std::int32_t startOffset, std::int32_t size);

std::uint32_t crc32(std::span<const std::uint8_t> bytes);

// What the window shows beside a loaded file.
struct FileInfo {
  std::size_t size = 0;   // bytes read
  bool more = false;      // the file is longer than what is read
  std::uint32_t crc = 0;  // CRC-32 of the bytes read
  std::string changedAt;  // local date and time of the file's last change
  std::int64_t extendedRecords = 0;
  std::int64_t overlappingBytes = 0;
  std::int64_t droppedBytes = 0;
  bool missingEnd = false;  // a HEX file without its end record may be half a file
  bool operator==(const FileInfo&) const = default;
};
std::string infoText(const FileInfo& info);  // lines for a label; one a note

}  // namespace kvr::images
