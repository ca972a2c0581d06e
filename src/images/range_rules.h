// How a file's extent is checked against the memory of the model: what is cut, what is cleared, what the user is told.
//
// Three layouts. Models with a Data Memory file of their own: code and data are checked apart. Other models of the
// later generation: the Data Memory follows the code in the same file. First generation: code, Data Memory and boot
// area share one 64 KB map, and the application may or may not reach up to the boot area.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/address_range.h"
#include "catalogue/mcu_record.h"
#include "images/file_scan.h"

namespace kvr::images {

inline constexpr std::int32_t kUsableData = 100;  // a Data Memory below this size is none

struct LoadedFile {
  FileFormat format = FileFormat::Hex;
  ImageKind kind = ImageKind::Code;
  std::int32_t fileStart = 0;
  std::int32_t fileEnd = 0;  // as the file has it, at least 511
  std::int64_t sum = 0;
};

struct RangeVerdict {
  std::int32_t fileEnd = 0;                      // the end that counts
  std::vector<catalogue::AddressRange> cleared;  // of the image: set to 0
  std::vector<std::string> messages;             // in order, each a message box of its own
  ImageKind sumBox = ImageKind::Code;            // whose check sum box takes `sumText`
  std::string sumText;
};

// `bytes` is the whole image with the file laid over it.
RangeVerdict judgeRange(const catalogue::McuRecord& model, const catalogue::IspRange& range, const LoadedFile& file,
                        std::span<const std::uint8_t> bytes);

// A sum as the check sum boxes show it: its last seven hexadecimal digits.
std::string sumDigits(std::int64_t sum);

// The refusal of a start address, or empty: it may be loaded there.
std::string checkStart(const catalogue::McuRecord& model, ImageKind kind, std::int64_t start);

// "Open HEX file" or "Open BIN file": the title of the messages.
std::string loadTitle(FileFormat format);

}  // namespace kvr::images
