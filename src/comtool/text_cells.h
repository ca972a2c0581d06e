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

// Columns: 0 for marks that combine with the character before them, 2 for wide East Asian characters and pictures, to
// the next multiple of eight for a tab at `column`, else 1 (control characters are shown by a picture of
// theirs).
int columnsOf(char32_t value, int column);

// In a row: the column of the character at a byte offset, and the offset of the character that covers a
// column (of the row's end for a column after it).
int columnAt(std::string_view row, std::size_t offset);
std::size_t offsetAt(std::string_view row, int column);

// What a fixed width font shows for a character: itself, a picture for a control character, a blank for a tab.
char32_t shownAs(char32_t value);

}  // namespace kvr::comtool
