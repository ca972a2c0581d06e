#include "platform/qt/iconv_codec.h"

#include <iconv.h>
#include <langinfo.h>

#include <array>
#include <cerrno>

namespace kvr::platform {
namespace {

constexpr const char* kReplacement = "\xEF\xBF\xBD";
constexpr std::size_t kLongestCharacter = 4;  // bytes, in any of the encodings

// An open conversion; closed with its holder.
class Conversion {
 public:
  enum class Stop { AtEnd, Inside, Bad };  // Inside: in a character whose end is missing

  Conversion(const char* to, const char* from) : handle_(iconv_open(to, from)) {}
  ~Conversion() {
    if (ok()) iconv_close(handle_);
  }
  Conversion(const Conversion&) = delete;
  Conversion& operator=(const Conversion&) = delete;
  bool ok() const { return handle_ != reinterpret_cast<iconv_t>(-1); }

  // Converts as far as the bytes are sound and moves the view past them. A piece at a time: rubbish stops it often.
  Stop run(std::string_view& bytes, std::string& text) const {
    Stop stop = Stop::AtEnd;
    while (!bytes.empty() && stop == Stop::AtEnd) {
      const std::string_view piece = bytes.substr(0, kPiece);
      const std::size_t taken = convert(piece, text, stop);
      bytes.remove_prefix(taken);
      if (stop == Stop::Inside && taken > 0 && !bytes.empty() && piece.size() == kPiece) stop = Stop::AtEnd;
    }
    return stop;
  }

 private:
  static constexpr std::size_t kPiece = 256;

  std::size_t convert(std::string_view piece, std::string& text, Stop& stop) const {
    std::array<char, kPiece * kLongestCharacter> room;
    char* from = const_cast<char*>(piece.data());  // iconv reads only, whatever its signature says
    char* to = room.data();
    std::size_t left = piece.size();
    std::size_t free = room.size();
    const bool whole = ok() && iconv(handle_, &from, &left, &to, &free) != static_cast<std::size_t>(-1);
    stop = whole ? Stop::AtEnd : ok() && errno == EINVAL ? Stop::Inside : Stop::Bad;
    text.append(room.data(), room.size() - free);
    return piece.size() - left;
  }

  iconv_t handle_;
};

// The C locale knows ASCII alone; then UTF-8 does no harm.
std::string localeCharset() {
  const std::string name = nl_langinfo(CODESET);
  return name.empty() || name == "ANSI_X3.4-1968" ? "UTF-8" : name;
}

std::size_t characterBytes(std::string_view text) {
  std::size_t bytes = 1;
  while (bytes < text.size() && (static_cast<unsigned char>(text[bytes]) & 0xC0) == 0x80) ++bytes;
  return bytes;
}

}  // namespace

std::string IconvCodec::charsetOf(Encoding encoding) const {
  switch (encoding) {
    case Encoding::Utf8:
      return "UTF-8";
    case Encoding::Latin1:
      return "ISO-8859-1";
    case Encoding::Gbk:
      return "GBK";
    default:
      return systemCharset_.empty() ? localeCharset() : systemCharset_;
  }
}

bool IconvCodec::systemIsUtf8() const {
  const std::string name = charsetOf(Encoding::System);
  return name == "UTF-8" || name == "utf8" || name == "UTF8";
}

std::string IconvCodec::decode(std::string_view& bytes, Encoding encoding) const {
  const Conversion conversion("UTF-8", charsetOf(encoding).c_str());
  std::string text;
  for (;;) {
    const auto stop = conversion.run(bytes, text);
    if (stop == Conversion::Stop::AtEnd) return text;
    if (stop == Conversion::Stop::Inside && bytes.size() < kLongestCharacter) return text;
    text += kReplacement;
    bytes.remove_prefix(1);
  }
}

std::string IconvCodec::encode(std::string_view text, Encoding encoding) const {
  const Conversion conversion(charsetOf(encoding).c_str(), "UTF-8");
  std::string bytes;
  while (conversion.run(text, bytes) != Conversion::Stop::AtEnd) {
    bytes += '?';
    text.remove_prefix(characterBytes(text));
  }
  return bytes;
}

std::string IconvCodec::fromGbk(std::string_view bytes) const {
  std::string text = decode(bytes, Encoding::Gbk);
  for (std::size_t left = bytes.size(); left > 0; --left) text += kReplacement;
  return text;
}

}  // namespace kvr::platform
