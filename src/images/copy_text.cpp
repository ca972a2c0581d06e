#include "images/copy_text.h"

#include "platform/text.h"

namespace kvr::images {
namespace {

constexpr std::size_t kToALine = 12;

std::string cArray(std::span<const std::uint8_t> bytes) {
  std::string text = "const unsigned char data[" + std::to_string(bytes.size()) + "] = {";
  for (std::size_t i = 0; i < bytes.size(); ++i)
    text += (i == 0 ? "\n  0x" : i % kToALine == 0 ? ",\n  0x" : ", 0x") + platform::hexText(bytes[i], 2);
  return text + "};\n";
}

std::string plainText(std::span<const std::uint8_t> bytes) {
  std::string text;
  for (const std::uint8_t byte : bytes) {
    const bool shown = (byte >= 0x20 && byte < 0x7F) || byte == '\n' || byte == '\r' || byte == '\t';
    text += shown ? static_cast<char>(byte) : '.';
  }
  return text;
}

}  // namespace

std::string copyText(std::span<const std::uint8_t> bytes, CopyForm form) {
  return form == CopyForm::CArray ? cArray(bytes) : plainText(bytes);
}

}  // namespace kvr::images
