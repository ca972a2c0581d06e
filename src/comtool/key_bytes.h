// What keys without a character send, in the way of a VT100: the sequences that firmware with a command line expects.
#pragma once

#include <string_view>

namespace kvr::comtool {

enum class Key { Tab, Escape, Up, Down, Right, Left, Home, End, Insert, Delete };

std::string_view bytesOf(Key key);

// The control character of Ctrl with a key: 1 to 26 for letters in either case, 0 for blank and "@", 27 to 31 for
// "[ \ ] ^ _"; -1: there is none.
int controlCharacter(char32_t key);

}  // namespace kvr::comtool
