// The virtual world knows no code page: what is not ASCII becomes U+FFFD, one for each byte.
#pragma once

#include "platform/text_codec.h"

namespace kvr::platform {

class PlainCodec : public TextCodec {
 public:
  std::string fromGbk(std::string_view bytes) const override {
    std::string text;
    for (const char c : bytes) text += static_cast<unsigned char>(c) < 0x80 ? std::string(1, c) : "\xEF\xBF\xBD";
    return text;
  }
};

}  // namespace kvr::platform
