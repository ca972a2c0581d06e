// Texts of files that were written under the Chinese code page.
#pragma once

#include <string>
#include <string_view>

namespace kvr::platform {

class TextCodec {
 public:
  virtual ~TextCodec() = default;
  // GBK to UTF-8; what is no GBK becomes U+FFFD, so the result is UTF-8 in any case.
  virtual std::string fromGbk(std::string_view bytes) const = 0;
};

// True when the bytes are well-formed UTF-8 (ASCII is).
bool isUtf8(std::string_view bytes);

// The text as UTF-8: unchanged when it is that already, else taken as GBK.
std::string utf8Of(std::string_view bytes, const TextCodec& codec);

}  // namespace kvr::platform
