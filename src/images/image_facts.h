// What an image is, so that a wrong one is seen before it is sent: where its bytes lie, where it begins to run, how
// much of the model's memory it fills, and what is odd about it. Values, and their texts for window and command.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "catalogue/address_range.h"
#include "catalogue/selected_model.h"
#include "images/image_buffer.h"

namespace kvr::images {

using catalogue::AddressRange;

// The jump at an image's start.
struct FirstVector {
  std::string_view mnemonic;  // "LJMP", "AJMP" or "SJMP"
  std::int32_t target = 0;
  bool operator==(const FirstVector&) const = default;
};
// Of the bytes at `address`; nothing when they are no jump.
std::optional<FirstVector> jumpAt(std::span<const std::uint8_t> bytes, std::int32_t address);

struct ImageFacts {
  std::vector<AddressRange> ranges;   // with something in them, rising; they neither touch nor overlap
  std::int64_t bytes = 0;             // in them
  std::uint8_t firstByte = 0;         // at the first address of the first range
  std::optional<FirstVector> vector;  // at address 0
  std::uint32_t crc = 0;              // CRC-32 from address 0 to the last one, gaps as the image has them

  bool empty() const { return ranges.empty(); }
  std::int32_t first() const { return empty() ? 0 : ranges.front().first; }
  std::int32_t last() const { return empty() ? -1 : ranges.back().last; }
  std::vector<AddressRange> gaps() const;  // between the ranges
};
ImageFacts factsOf(const FileLayer& image);

// The runs of marks that are not 0.
std::vector<AddressRange> markedRanges(std::span<const std::uint8_t> marks);

// How an image lies in the memory of a model, in bytes.
struct AreaFit {
  std::int64_t area = 0;        // size of the memory that the image is for
  std::int64_t filled = 0;      // of it
  std::int64_t inData = 0;      // of a code image: what lies in the Data Memory that follows the code in the same file
  std::int64_t beyond = 0;      // what has no place
  std::int32_t beyondFrom = 0;  // the first such address; 0: unknown
};
AreaFit fitOf(const ImageFacts& facts, const catalogue::SelectedModel& model, ImageKind kind);

// "512 bytes", "1.5 KB", "12 KB".
std::string sizeText(std::int64_t bytes);
// "0123H", and "0000H - 2FFFH" of a range.
std::string addressText(std::int32_t address);
std::string rangeText(const AddressRange& range);
// The first ranges of a list, and how many more there are; empty for none.
std::string rangesText(std::span<const AddressRange> ranges, std::size_t most = 8);

// One line: "12 KB of 60 KB · vector 0123H · last 2FFFH". Empty for an empty image.
std::string briefText(const ImageFacts& facts, const AreaFit& fit, ImageKind kind);
// What the user should look at before sending the image, a line each.
std::vector<std::string> oddities(const ImageFacts& facts, ImageKind kind);
// "Larger than Ivy-HF0S: 12 bytes from F000H on have no place."; empty when everything has its place.
std::string beyondText(const AreaFit& fit, const catalogue::SelectedModel& model);

}  // namespace kvr::images
