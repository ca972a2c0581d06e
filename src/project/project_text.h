// The text of a project file, apart from what it means.
//
// Lines end with CR LF. A header of "key: value" lines ends at a line "END"; then the code image follows as one line of
// hexadecimal. A data image brings a section of its own after it: "Data_File_Begin:", the sum, one line of
// hexadecimal, "Data_File_End". The sums are those of the bytes in the lines, decimal.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/file_system.h"

namespace kvr::project {

struct HeaderLine {
  std::string key;    // what is before the first ':', unchanged
  std::string value;  // what is after it, trimmed; bytes as in the file, in whatever encoding
  bool operator==(const HeaderLine&) const = default;
};
using Header = std::vector<HeaderLine>;

// The first line with the key; null when there is none.
const HeaderLine* findLine(const Header& header, std::string_view key);

// A line of hexadecimal and the sum that the file states for it.
struct HexSection {
  platform::Bytes bytes;         // at most as many as the image has room for
  std::uint32_t sum = 0;         // of all bytes in the line
  std::optional<double> stated;  // what the file says, if it says a number
  bool fits = true;              // the line holds no more bytes than the image has room for
  // Whether the bytes are those that were saved. An empty line never is.
  bool sound() const { return fits && !bytes.empty() && stated == static_cast<double>(sum); }
  bool operator==(const HexSection&) const = default;
};

struct ProjectText {
  Header header;       // up to the line "END", the sum of the code included
  bool ended = false;  // there is such a line
  HexSection code;
  std::optional<HexSection> data;
};

// Takes any bytes. Lines may end with CR LF, LF or CR; pairs of digits may have blanks between them, a pair that is
// none reads 0. A byte order mark is passed over, and so are empty lines at the end of the file.
ProjectText parseProject(std::span<const std::uint8_t> file, std::size_t codeRoom, std::size_t dataRoom);

// The whole file. `header` has neither the sum nor "END"; line ends inside a value become blanks.
platform::Bytes formatProject(const Header& header, std::span<const std::uint8_t> code,
                              std::optional<std::span<const std::uint8_t>> data);

}  // namespace kvr::project
