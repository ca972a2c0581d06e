#include "comtool/paste_queue.h"

#include "comtool/text_cells.h"

namespace kvr::comtool {

namespace {

// The bytes of the line end at the head of the text; 0: there is none.
std::size_t lineEndBytes(std::string_view text) {
  if (text.starts_with("\r\n")) return 2;
  return text.starts_with('\r') || text.starts_with('\n') ? 1 : 0;
}

std::string withLineEnds(std::string_view text, std::string_view lineEnd) {
  std::string result;
  result.reserve(text.size());
  while (!text.empty()) {
    const std::size_t run = text.find_first_of("\r\n");
    result += text.substr(0, run);
    if (run == std::string_view::npos) break;
    text.remove_prefix(run);
    text.remove_prefix(lineEndBytes(text));
    result += lineEnd;
  }
  return result;
}

}  // namespace

void PasteQueue::start(std::string_view text, std::string_view lineEnd, Pace pace) {
  text_ = lineEnd.empty() ? std::string(text) : withLineEnds(text, lineEnd);
  at_ = 0;
  pace_ = pace;
}

PasteQueue::Step PasteQueue::next(std::size_t room) {
  const std::size_t from = at_;
  platform::Millis pause{0};
  while (active() && pause.count() == 0) {
    const std::string_view rest = std::string_view(text_).substr(at_);
    const std::size_t end = lineEndBytes(rest);
    const std::size_t count = end > 0 ? end : firstChar(rest).bytes;
    if (at_ > from && at_ - from + count > room) break;
    at_ += count;
    pause = pace_.perCharacter + (end > 0 ? pace_.perLine : platform::Millis{0});
  }
  return {std::string_view(text_).substr(from, at_ - from), pause};
}

}  // namespace kvr::comtool
