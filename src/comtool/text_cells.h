// Characters of UTF-8 text and the room they take in a fixed width font.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kvr::comtool {

struct Utf8Char {
  char32_t value = 0;
  std::size_t bytes = 0;  // 0: the text is at its end
};

// The character at the head of the text. A byte that begins no valid character counts as U+FFFD, one byte long.
Utf8Char firstChar(std::string_view text);
std::size_t countChars(std::string_view text);
// The first or the last `count` characters of valid text.
std::string_view headChars(std::string_view text, std::size_t count);
std::string_view tailChars(std::string_view text, std::size_t count);
std::string utf8Of(char32_t value);

// Columns: 0 for marks that combine with the character before them, 2 for wide East Asian characters and pictures, to the
// next multiple of eight for a tab that stands at `column`, else 1 (control characters are shown by a picture of theirs).
int columnsOf(char32_t value, int column);

}  // namespace kvr::comtool
