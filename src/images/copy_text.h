// Bytes of an image as text for the clipboard.
#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace kvr::images {

enum class CopyForm {
  CArray,  // "const unsigned char data[2] = {\n  0x12, 0x34};": twelve to a line
  Text     // printable ASCII and line ends as they are, a '.' for any other byte
};
std::string copyText(std::span<const std::uint8_t> bytes, CopyForm form);

}  // namespace kvr::images
