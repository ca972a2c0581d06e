#include "shell/notices.h"

#include <algorithm>

namespace kvr::shell {

void Notices::add(const std::string& time, const std::string& text) {
  std::string line = text;
  std::replace_if(
      line.begin(), line.end(), [](char c) { return c == '\n' || c == '\r'; }, ' ');
  if (line == latest_ && !lines_.empty()) lines_.pop_front();
  lines_.push_front(time + "  " + line);
  latest_ = std::move(line);
  if (lines_.size() > kMost) lines_.pop_back();
}

std::string Notices::history() const {
  std::string all;
  for (const std::string& line : lines_) all += (all.empty() ? "" : "\n") + line;
  return all;
}

}  // namespace kvr::shell
