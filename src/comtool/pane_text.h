// The text of the receive pane, laid out in rows of a fixed width font, so that a view draws the rows it shows and
// nothing else. Adding text costs what is added, dropping the oldest costs what is dropped, and one endless line is
// many rows like any other text: nothing here grows with the length of a line.
//
// Text is UTF-8, whole characters (see TextDecoder). CR, LF and the pairs CR LF and LF CR end a line. Every byte is
// kept, line ends and NUL included.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>

namespace kvr::comtool {

class PaneText {
 public:
  // Bytes from the start of the text that was ever here; a place keeps its position when older text goes.
  using Position = std::uint64_t;

  struct Row {
    Position start = 0;
    std::string text;         // with the line end, if the row has one
    std::uint32_t chars = 0;  // in `text`
    std::uint16_t columns = 0;
    std::uint8_t endBytes = 0;  // of the line end; 0: the line goes on in the next row, or is the last
    std::string_view shown() const { return std::string_view(text).substr(0, text.size() - endBytes); }
    Position end() const { return start + text.size(); }
  };
  struct Range {
    Position from = 0;
    Position to = 0;
    bool empty() const { return to <= from; }
    bool operator==(const Range&) const = default;
  };

  static constexpr int kMaxColumns = 1000;
  static constexpr int kMinColumns = 8;

  // Lays all text out anew; held to kMinColumns..kMaxColumns.
  void setWidth(int columns);
  int width() const { return width_; }

  void append(std::string_view text);
  void clear();
  // The oldest rows go until at most `chars` characters are left.
  void keepNewest(std::size_t chars);

  std::size_t chars() const { return chars_; }
  Position begin() const { return rows_.empty() ? end_ : rows_.front().start; }
  Position end() const { return end_; }
  std::size_t rowCount() const { return rows_.size(); }
  const Row& row(std::size_t index) const { return rows_[index]; }
  // The row that holds the position; the first or last one for positions before or after the text. 0 for an empty
  // text.
  std::size_t rowAt(Position position) const;

  std::string slice(Range range) const;  // as far as the text is still there
  std::string all() const { return slice({begin(), end()}); }

  // The next place of `needle` that starts at or after `from`, or the last one that ends at or before it (backward).
  // ASCII letters match in either case. Nothing is found of an empty needle.
  std::optional<Range> find(std::string_view needle, Position from, bool backward = false) const;

 private:
  void add(std::string_view character, char32_t value);
  void addPlain(std::string_view run);
  Row& openRow();
  int width_ = 80;
  std::deque<Row> rows_;
  std::size_t chars_ = 0;
  Position end_ = 0;
};

}  // namespace kvr::comtool
