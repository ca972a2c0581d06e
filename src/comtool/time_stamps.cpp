#include "comtool/time_stamps.h"

namespace kvr::comtool {

namespace {

bool isLineEnd(char c) {
  return c == '\r' || c == '\n';
}

}  // namespace

std::string TimeStamps::apply(StampMode mode, std::string_view text, const std::string& stamp, bool newBurst) {
  if (mode == StampMode::Off) {
    if (!text.empty()) inLine_ = !isLineEnd(text.back());
    burstOpen_ = false;
    return std::string(text);
  }
  burstOpen_ = mode == StampMode::Burst && (burstOpen_ || newBurst);
  std::string result;
  result.reserve(text.size() + 16);
  const auto mark = [&] { result += "[" + stamp + "] "; };
  for (const char c : text) {
    if (burstOpen_) {
      if (inLine_) result += '\n';
      mark();
      burstOpen_ = false;
    } else if (mode == StampMode::Line && !inLine_ && !isLineEnd(c)) {
      mark();
    }
    result += c;
    inLine_ = !isLineEnd(c);
  }
  return result;
}

}  // namespace kvr::comtool
