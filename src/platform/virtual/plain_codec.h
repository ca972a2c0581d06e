// The virtual world knows no code page: what is not ASCII becomes U+FFFD, one for each byte. UTF-8 stays as it is.
#pragma once

#include <utility>

#include "platform/text_codec.h"

namespace kvr::platform {

class PlainCodec : public TextCodec {
 public:
  bool systemIsUtf8() const override { return true; }
  std::string decode(std::string_view& bytes, Encoding) const override { return fromGbk(std::exchange(bytes, {})); }
  std::string encode(std::string_view text, Encoding) const override { return std::string(text); }
  std::string fromGbk(std::string_view bytes) const override {
    std::string text;
    for (const char c : bytes) text += static_cast<unsigned char>(c) < 0x80 ? std::string(1, c) : "\xEF\xBF\xBD";
    return text;
  }
};

}  // namespace kvr::platform
