#include "platform/qt/iconv_codec.h"

#include <iconv.h>

namespace kvr::platform {
namespace {

constexpr const char* kReplacement = "\xEF\xBF\xBD";

// An open conversion; closed with its holder.
class Conversion {
 public:
  Conversion() : handle_(iconv_open("UTF-8", "GBK")) {}
  ~Conversion() {
    if (ok()) iconv_close(handle_);
  }
  Conversion(const Conversion&) = delete;
  Conversion& operator=(const Conversion&) = delete;
  bool ok() const { return handle_ != reinterpret_cast<iconv_t>(-1); }

  // Converts as far as the bytes are sound and moves the view past them.
  std::string run(std::string_view& bytes) const {
    std::string out(bytes.size() * 3, '\0');       // no character of two bytes takes more than three
    char* from = const_cast<char*>(bytes.data());  // iconv reads only, whatever its signature says
    char* to = out.data();
    std::size_t left = bytes.size();
    std::size_t room = out.size();
    iconv(handle_, &from, &left, &to, &room);
    out.resize(out.size() - room);
    bytes.remove_prefix(bytes.size() - left);
    return out;
  }

 private:
  iconv_t handle_;
};

}  // namespace

std::string IconvCodec::fromGbk(std::string_view bytes) const {
  const Conversion conversion;
  std::string text;
  while (!bytes.empty()) {
    if (conversion.ok()) text += conversion.run(bytes);
    if (bytes.empty()) break;
    text += kReplacement;
    bytes.remove_prefix(1);
  }
  return text;
}

}  // namespace kvr::platform
