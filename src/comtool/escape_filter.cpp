#include "comtool/escape_filter.h"

namespace kvr::comtool {

namespace {

constexpr unsigned char kEsc = 0x1B;
constexpr unsigned char kBel = 0x07;

bool among(unsigned char c, std::string_view all) {
  return all.find(static_cast<char>(c)) != std::string_view::npos;
}
bool endsAll(unsigned char c) {
  return among(c, "\r\n\x18\x1A");
}

}  // namespace

std::string EscapeFilter::pass(std::string_view text) {
  if (state_ == State::Text && text.find(static_cast<char>(kEsc)) == std::string_view::npos) return std::string(text);
  std::string shown;
  shown.reserve(text.size());
  for (const char c : text)
    if (!swallows(static_cast<unsigned char>(c))) shown += c;
  return shown;
}

bool EscapeFilter::began(unsigned char c) {
  if (c == '[')
    state_ = State::Control;
  else if (among(c, "]PX^_"))
    state_ = State::String;
  else if (among(c, "#%()*+ -./"))
    state_ = State::Short;
  else
    state_ = State::Text;
  return c >= 0x20 && c < 0x7F;  // anything else after ESC is text again
}

bool EscapeFilter::swallows(unsigned char c) {
  if (state_ == State::Text && c != kEsc) return false;
  if (state_ != State::Text && (endsAll(c) || ++length_ > kLongest)) {
    clear();
    return c == 0x18 || c == 0x1A;
  }
  switch (state_) {
    case State::Escape:
      if (c != kEsc) return began(c);
      return true;
    case State::Short:
      state_ = State::Text;
      return true;
    case State::Control:
      if (c == kEsc) break;
      if (c >= 0x20 && c < 0x40) return true;
      state_ = State::Text;
      return c >= 0x40 && c < 0x7F;
    case State::String:
      if (c == kBel) state_ = State::Text;
      if (c == kEsc) state_ = State::StringEscape;
      return true;
    case State::StringEscape:
      state_ = State::Text;
      return c == '\\' || began(c);
    default:
      break;
  }
  length_ = 0;
  state_ = State::Escape;
  return true;
}

}  // namespace kvr::comtool
