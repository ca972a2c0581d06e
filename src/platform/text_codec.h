// Texts in other encodings than UTF-8: files that were written under the Chinese code page, and what firmware sends.
#pragma once

#include <string>
#include <string_view>

namespace kvr::platform {

enum class Encoding { System, Utf8, Latin1, Gbk };  // System: what the user's locale says

class TextCodec {
 public:
  virtual ~TextCodec() = default;
  virtual bool systemIsUtf8() const = 0;
  // The whole characters at the head of `bytes`, as UTF-8; takes them off, and leaves the bytes of a character that has
  // only begun (three at most). A byte that belongs to no character becomes U+FFFD.
  virtual std::string decode(std::string_view& bytes, Encoding encoding) const = 0;
  // UTF-8 text in the encoding; "?" for a character that it lacks.
  virtual std::string encode(std::string_view text, Encoding encoding) const = 0;
  // GBK to UTF-8; what is no GBK becomes U+FFFD, so the result is UTF-8 in any case.
  virtual std::string fromGbk(std::string_view bytes) const = 0;
};

// True when the bytes are well-formed UTF-8 (ASCII is).
bool isUtf8(std::string_view bytes);

// The text as UTF-8: unchanged when it is that already, else taken as GBK.
std::string utf8Of(std::string_view bytes, const TextCodec& codec);

}  // namespace kvr::platform
