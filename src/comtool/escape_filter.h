// Takes escape sequences (colours, cursor moves, titles) out of a text, so that a terminal without a cursor of its own
// shows the words alone. Sequences may be cut anywhere between two pieces of text.
//
// A sequence begins with ESC: "[" up to a letter; "]", "P", "X", "^" or "_" up to BEL or ESC "\"; "#", "%" or a bracket
// and one more character; or one character. What turns out to be no sequence ends where it goes wrong: the end of a
// line, CAN and SUB end any of them, and none takes more than `kLongest` bytes of text with it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kvr::comtool {

class EscapeFilter {
 public:
  static constexpr std::size_t kLongest = 4096;
  std::string pass(std::string_view text);  // UTF-8
  void clear() { *this = {}; }

 private:
  enum class State { Text, Escape, Short, Control, String, StringEscape };
  bool swallows(unsigned char c);  // false: the byte is text
  bool began(unsigned char c);
  State state_ = State::Text;
  std::size_t length_ = 0;  // of the sequence so far
};

}  // namespace kvr::comtool
