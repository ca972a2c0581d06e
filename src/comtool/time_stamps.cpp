#include "comtool/time_stamps.h"

#include <algorithm>
#include <utility>

namespace kvr::comtool {

namespace {

bool endsLine(char c) {
  return c == '\r' || c == '\n';
}

}  // namespace

std::string TimeStamps::apply(StampMode mode, std::string_view text, const std::string& stamp, bool newBurst) {
  burstOpen_ = mode == StampMode::Burst && (burstOpen_ || newBurst);
  if (text.empty()) return {};
  std::string result;
  const std::string mark = "[" + stamp + "] ";
  if (mode == StampMode::Line) {
    addLines(result, text, mark);
  } else {
    if (burstOpen_) result = endLine() + mark;
    burstOpen_ = false;
    result += text;
  }
  inLine_ = !endsLine(text.back());
  return result;
}

void TimeStamps::addLines(std::string& result, std::string_view text, const std::string& mark) {
  result.reserve(text.size() + text.size() / 4 + 16);
  while (!text.empty()) {
    if (!inLine_ && !endsLine(text.front())) result += mark;
    const auto end = std::find_if(text.begin(), text.end(), endsLine);
    const auto past = std::find_if_not(end, text.end(), endsLine);
    const auto count = static_cast<std::size_t>(past - text.begin());
    result += text.substr(0, count);
    text.remove_prefix(count);
    inLine_ = false;
  }
}

std::string TimeStamps::endLine() {
  return std::exchange(inLine_, false) ? "\n" : "";
}

}  // namespace kvr::comtool
