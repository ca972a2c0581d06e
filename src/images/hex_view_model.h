// The logic of a hexadecimal view of one image buffer: which lines show, where the caret is, what a typed digit
// changes. It knows no window: a widget asks for the lines that are visible and passes gestures on.
//
// Only the buffer's range is shown, in lines of 16 bytes; a line's address is a multiple of 16, the first line is the
// one that holds `rangeStart` (it shows from its first byte), the last may be short.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "catalogue/address_range.h"
#include "images/comparison.h"
#include "images/image_buffer.h"

namespace kvr::images {

enum class HexKey { Left, Right, Up, Down, PageUp, PageDown, LineStart, LineEnd, First, Last };

// A place in the view: a byte and which of its two digits.
struct HexSpot {
  std::int32_t address = 0;
  bool lowDigit = false;
  bool operator==(const HexSpot&) const = default;
};

struct HexCell {
  std::uint8_t value = 0;
  bool fromFile = false;  // false: no file wrote this byte
  bool changed = false;   // since the load
  bool inField = false;   // belongs to the serial number's field
  bool selected = false;
  bool differs = false;  // from the second file
  bool gap() const { return !fromFile && !changed; }
  bool operator==(const HexCell&) const = default;
};

struct HexLine {
  std::int32_t address = 0;  // of the first cell
  int count = 0;             // cells in use, 1 to 16
  std::array<HexCell, 16> cells{};
  std::string hexText() const;  // " 0000F0   12 34 ... "
};

// A byte that a typed digit wants changed; nothing has been stored yet.
struct HexEdit {
  std::int32_t address = 0;
  std::uint8_t value = 0;
  bool operator==(const HexEdit&) const = default;
};

class HexViewModel {
 public:
  // The buffer must outlive the model. Without one the view is empty.
  void show(const ImageBuffer& buffer) { buffer_ = &buffer; }
  const ImageBuffer* buffer() const { return buffer_; }

  // Lines and scrolling. Line 0 is the first of the range.
  int lineCount() const;
  int scrollMaximum() const;  // so that the last lines can come up to the top of the view
  int topLine() const { return topLine_; }
  void scrollTo(int line);  // held to 0 .. scrollMaximum
  int pageLines() const { return pageLines_; }
  void setPageLines(int lines);  // how many whole lines the window shows, at least 1
  HexLine line(int index) const;
  std::int32_t firstAddress() const;  // of line 0, a multiple of 16
  std::int32_t lastAddress() const;   // `rangeEnd`, held to the buffer
  std::string pageText() const;       // two line ends, then the visible lines, each with a line end

  // Caret and selection.
  HexSpot caret() const { return caret_; }
  catalogue::AddressRange selection() const;  // empty when nothing is selected
  void move(HexKey key, bool selecting);      // keeps the caret in view
  void click(HexSpot spot, bool selecting);
  void selectSpan(catalogue::AddressRange span);
  void keepInRange();  // after the buffer's bounds changed
  void reveal();       // scrolls so that the caret shows

  // The serial number's field, shown marked.
  void setField(catalogue::AddressRange field) { field_ = field; }
  catalogue::AddressRange field() const { return field_; }

  // Edit: what the digit under the caret becomes; nothing for a character that is no hexadecimal digit, without a byte
  // under the caret, or while several bytes are selected. `stepOn` moves to the next digit afterwards.
  std::optional<HexEdit> digit(char32_t character) const;
  void stepOn();

  // Find and go to.
  bool goTo(const std::string& hexAddress);  // false: no address, or outside the range; nothing moved
  bool find(const std::vector<std::uint8_t>& pattern, bool forward);  // wraps around; selects what it found
  std::string copyHex() const;  // the selection (or the byte under the caret) as "12 34 56", a line end every 16 bytes

  // A second file (see `Comparison`), compared anew after each change of the buffer.
  const Comparison& comparison() const { return comparison_; }
  void compareWith(std::string name, FileLayer other);
  void compareAnew();
  void endComparison() { comparison_.end(); }
  bool toDifference(bool forward);  // selects the next or the previous one; false: there is none

 private:
  int lineOf(std::int32_t address) const { return static_cast<int>((address - firstAddress()) / 16); }
  void place(std::int32_t address, bool lowDigit, bool selecting);
  const ImageBuffer* buffer_ = nullptr;
  int topLine_ = 0;
  int pageLines_ = 62;
  HexSpot caret_;
  std::optional<std::int32_t> anchor_;  // other end of the selection
  catalogue::AddressRange field_;
  Comparison comparison_;
};

// What the user typed into the find box as bytes: "12 34" or "1234" as hexadecimal, else (or in quotes) as text.
std::vector<std::uint8_t> findPattern(const std::string& typed, bool asText);

}  // namespace kvr::images
