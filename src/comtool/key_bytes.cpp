#include "comtool/key_bytes.h"

namespace kvr::comtool {

std::string_view bytesOf(Key key) {
  switch (key) {
    case Key::Tab:
      return "\t";
    case Key::Escape:
      return "\x1B";
    case Key::Up:
      return "\x1B[A";
    case Key::Down:
      return "\x1B[B";
    case Key::Right:
      return "\x1B[C";
    case Key::Left:
      return "\x1B[D";
    case Key::Home:
      return "\x1B[H";
    case Key::End:
      return "\x1B[F";
    case Key::Insert:
      return "\x1B[2~";
    default:
      return "\x1B[3~";
  }
}

int controlCharacter(char32_t key) {
  if (key >= U'a' && key <= U'z') return static_cast<int>(key - U'a') + 1;
  if (key >= U'@' && key <= U'_') return static_cast<int>(key - U'@');
  return key == U' ' ? 0 : -1;
}

}  // namespace kvr::comtool
