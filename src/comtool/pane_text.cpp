#include "comtool/pane_text.h"

#include <algorithm>

#include "comtool/text_cells.h"

namespace kvr::comtool {

namespace {

// Marks that take no column could make a row without end.
constexpr std::size_t kMaxRowBytes = 4 * PaneText::kMaxColumns;

char lowered(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool isPlain(char c) {
  return c >= 0x20 && c < 0x7F;
}
bool isLineEnd(char32_t value) {
  return value == '\r' || value == '\n';
}

// CR after LF, or LF after CR: the second half of one line end.
bool joinsLineEnd(const PaneText::Row& row, char32_t value) {
  return row.endBytes == 1 && isLineEnd(value) && static_cast<char32_t>(row.text.back()) != value;
}

}  // namespace

void PaneText::setWidth(int columns) {
  columns = std::clamp(columns, kMinColumns, kMaxColumns);
  if (columns == width_) return;
  width_ = columns;
  const std::string text = all();
  end_ = begin();
  rows_.clear();
  chars_ = 0;
  append(text);
}

void PaneText::append(std::string_view text) {
  while (!text.empty()) {
    const auto special = std::find_if_not(text.begin(), text.end(), isPlain);
    const auto run = static_cast<std::size_t>(special - text.begin());
    if (run > 0) addPlain(text.substr(0, run));
    text.remove_prefix(run);
    if (text.empty()) break;
    const Utf8Char next = firstChar(text);
    add(text.substr(0, next.bytes), next.value);
    text.remove_prefix(next.bytes);
  }
}

// Most of what comes: one column and one byte a character, whole rows at a time.
void PaneText::addPlain(std::string_view run) {
  while (!run.empty()) {
    Row* row = rows_.empty() ? &openRow() : &rows_.back();
    if (row->endBytes > 0 || row->columns >= width_ || row->text.size() >= kMaxRowBytes) row = &openRow();
    const std::size_t count = std::min(run.size(), static_cast<std::size_t>(width_ - row->columns));
    row->text += run.substr(0, count);
    row->chars += static_cast<std::uint32_t>(count);
    row->columns = static_cast<std::uint16_t>(row->columns + count);
    chars_ += count;
    end_ += count;
    run.remove_prefix(count);
  }
}

void PaneText::clear() {
  rows_.clear();
  chars_ = 0;
}

void PaneText::keepNewest(std::size_t chars) {
  while (chars_ > chars) {
    chars_ -= rows_.front().chars;
    rows_.pop_front();
  }
}

PaneText::Row& PaneText::openRow() {
  Row row;
  row.start = end_;
  return rows_.emplace_back(std::move(row));
}

void PaneText::add(std::string_view character, char32_t value) {
  Row* row = rows_.empty() ? &openRow() : &rows_.back();
  if (joinsLineEnd(*row, value)) {
    ++row->endBytes;
  } else {
    if (row->endBytes > 0) row = &openRow();
    if (isLineEnd(value)) {
      row->endBytes = 1;
    } else {
      int columns = columnsOf(value, row->columns);
      if (row->columns + columns > width_ || row->text.size() >= kMaxRowBytes) {
        row = &openRow();
        columns = columnsOf(value, 0);
      }
      row->columns = static_cast<std::uint16_t>(row->columns + columns);
    }
  }
  row->text += character;
  ++row->chars;
  ++chars_;
  end_ += character.size();
}

std::size_t PaneText::rowAt(Position position) const {
  const auto next =
      std::upper_bound(rows_.begin(), rows_.end(), position, [](Position p, const Row& row) { return p < row.start; });
  return next == rows_.begin() ? 0 : static_cast<std::size_t>(next - rows_.begin()) - 1;
}

std::string PaneText::slice(Range range) const {
  range.from = std::max(range.from, begin());
  range.to = std::min(range.to, end_);
  std::string text;
  if (range.empty()) return text;
  for (std::size_t i = rowAt(range.from); i < rows_.size() && rows_[i].start < range.to; ++i) {
    const Row& row = rows_[i];
    const auto first = static_cast<std::size_t>(range.from > row.start ? range.from - row.start : 0);
    text += std::string_view(row.text).substr(first, static_cast<std::size_t>(range.to - row.start) - first);
  }
  return text;
}

std::optional<PaneText::Range> PaneText::find(std::string_view needle, Position from, bool backward) const {
  if (needle.empty()) return {};
  std::string text = all();
  std::string sought(needle);
  std::transform(text.begin(), text.end(), text.begin(), lowered);
  std::transform(sought.begin(), sought.end(), sought.begin(), lowered);
  const auto start = static_cast<std::size_t>(from > begin() ? from - begin() : 0);
  if (backward && start < sought.size()) return {};
  const std::size_t at = backward ? text.rfind(sought, start - sought.size()) : text.find(sought, start);
  if (at == std::string::npos) return {};
  return Range{begin() + at, begin() + at + sought.size()};
}

}  // namespace kvr::comtool
