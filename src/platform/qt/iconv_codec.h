// The code page conversion of the C library.
#pragma once

#include <string>
#include <utility>

#include "platform/text_codec.h"

namespace kvr::platform {

class IconvCodec : public TextCodec {
 public:
  // `systemCharset` names the user's own encoding as iconv knows it; empty: what the locale says.
  explicit IconvCodec(std::string systemCharset = {}) : systemCharset_(std::move(systemCharset)) {}
  bool systemIsUtf8() const override;
  std::string decode(std::string_view& bytes, Encoding encoding) const override;
  std::string encode(std::string_view text, Encoding encoding) const override;
  std::string fromGbk(std::string_view bytes) const override;

 private:
  std::string charsetOf(Encoding encoding) const;
  std::string systemCharset_;
};

}  // namespace kvr::platform
