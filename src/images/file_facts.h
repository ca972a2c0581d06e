// What an image file is, without a model's limits and without a window: for a look at it, a comparison and a
// conversion.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "images/image_facts.h"
#include "images/image_file.h"

namespace kvr::images {

struct FileFacts {
  std::string path;
  FileFault fault = FileFault::None;  // any other: the rest says nothing
  FileFormat format = FileFormat::Binary;
  FileLayer layer;
  ImageFacts image;
  FileInfo info;                         // size and CRC-32 of the file itself; notes
  std::int64_t sum = 0;                  // of its data bytes
  std::array<int, 256> recordsOfType{};  // of a HEX file
  int badSums = 0;
  std::vector<AddressRange> overlaps;
};
// `start` is added to the file's addresses, 0 to FFFFH.
FileFacts fileFacts(const std::string& path, const FileContent& content, std::int32_t start = 0);

// The facts as lines; `model` null: none is given.
std::vector<std::string> factLines(const FileFacts& facts, const catalogue::SelectedModel* model, ImageKind kind);
// What should be looked at before the file is sent.
std::vector<std::string> warningLines(const FileFacts& facts, const catalogue::SelectedModel* model, ImageKind kind);

// Where two images differ.
struct Difference {
  enum class Kind { Bytes, OnlyFirst, OnlySecond };  // other values; addresses that only one of them has
  Kind kind = Kind::Bytes;
  AddressRange range;
  bool operator==(const Difference&) const = default;
};
// In rising order; empty: the images are the same.
std::vector<Difference> differencesOf(const FileLayer& first, const FileLayer& second);
// "0100H - 010FH  16 bytes differ, 02 01 .. here, 02 05 .. there".
std::string differenceText(const Difference& difference, const FileLayer& first, const FileLayer& second);

// The image as an Intel HEX file: records of 16 bytes for what it holds, and the end record. Empty when it holds
// something above FFFFH, where a record's address does not reach.
platform::Bytes asHex(const FileLayer& image);
// From address 0 to the last one, with `fill` where the image holds nothing.
platform::Bytes asBinary(const FileLayer& image, std::uint8_t fill = 0);

}  // namespace kvr::images
