// Bytes from the line as text. Firmware writes in the code page of the user's system, which is UTF-8; a character
// whose bytes arrive in two reads is put together, and a byte that belongs to no character shows as U+FFFD.
#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace kvr::comtool {

class TextDecoder {
 public:
  // The text of all whole characters so far; the bytes of one that has only begun are held back.
  std::string decode(std::span<const std::uint8_t> bytes);
  // What is held back, as U+FFFD: nothing more will come of it.
  std::string finish();
  // What is held back, as it came; for a display that shows bytes.
  std::string takeHeld();
  bool holds() const { return !held_.empty(); }

 private:
  std::string held_;
};

}  // namespace kvr::comtool
