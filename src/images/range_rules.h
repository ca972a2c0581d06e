// How a file's extent is held against the memory of the model: what is cut, what is cleared, what the person is told.
//
// Three layouts. Models with a Data Memory file of their own: code and data are checked apart. Other models of the
// later generation: the Data Memory lies behind the code in the same file. First generation: code, Data Memory and boot
// area share one 64 KB map, and the application may or may not reach up to the boot area.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "catalogue/mcu_record.h"
#include "images/file_scan.h"
#include "images/hex_view_model.h"

namespace kvr::images {

struct LoadedFile {
  FileFormat format = FileFormat::Hex;
  bool isCode = true;  // else the data image
  std::int32_t fileStart = 0;
  std::int32_t fileEnd = 0;  // as the file has it, at least 511
  std::int64_t sum = 0;
};

struct RangeVerdict {
  std::int32_t fileEnd = 0;           // the end that counts
  std::vector<AddressSpan> cleared;   // of the image: set to 0
  std::vector<std::string> messages;  // in order, each a message box of its own
  bool sumInCodeBox = true;           // which check sum box takes `sumText`
  std::string sumText;
};

// `bytes` is the whole image with the file laid over it.
RangeVerdict judgeRange(const catalogue::McuRecord& model, const catalogue::IspRange& range, const LoadedFile& file,
                        std::span<const std::uint8_t> bytes);

// The refusal of a start address, or empty: it may be loaded there.
std::string checkStart(const catalogue::McuRecord& model, bool isCode, std::int64_t startOffset);

// "Open HEX file" or "Open BIN file": the title of the messages.
std::string loadTitle(FileFormat format);

}  // namespace kvr::images
