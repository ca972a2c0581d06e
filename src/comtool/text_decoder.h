// Bytes from the line as text, in the encoding that the firmware writes; the user's own unless another is chosen. A
// character whose bytes arrive in several reads is put together, and a byte that belongs to no character shows as
// U+FFFD.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "platform/text_codec.h"

namespace kvr::comtool {

class TextDecoder {
 public:
  explicit TextDecoder(const platform::TextCodec& codec) : codec_(codec) {}
  // The text of all whole characters so far; the bytes of one that has only begun are held back.
  std::string decode(std::span<const std::uint8_t> bytes, platform::Encoding encoding = platform::Encoding::System);
  // What is held back, as U+FFFD: nothing more will come of it.
  std::string finish();
  // What is held back, as it came; for a display that shows bytes.
  std::string takeHeld();
  bool holds() const { return !held_.empty(); }

 private:
  const platform::TextCodec& codec_;
  std::string held_;
};

}  // namespace kvr::comtool
