#include "images/hex_view_model.h"

#include <algorithm>

#include "platform/text.h"

namespace kvr::images {

using catalogue::AddressRange;
using platform::hexText;

namespace {

constexpr std::string_view kDigits = "0123456789ABCDEF";

void addByte(std::string& text, std::uint8_t value) {
  text += kDigits[value >> 4];
  text += kDigits[value & 15];
}

int digitValue(char32_t c) {
  if (c >= U'0' && c <= U'9') return static_cast<int>(c - U'0');
  if (c >= U'a' && c <= U'f') return static_cast<int>(c - U'a') + 10;
  if (c >= U'A' && c <= U'F') return static_cast<int>(c - U'A') + 10;
  return -1;
}

}  // namespace

std::string HexLine::hexText() const {
  std::string text = " " + platform::hexText(static_cast<std::uint32_t>(address), 6) + "   ";
  for (int i = 0; i < count; ++i) {
    addByte(text, cells[static_cast<std::size_t>(i)].value);
    text += ' ';
  }
  return text;
}

std::int32_t HexViewModel::firstAddress() const {
  if (buffer_ == nullptr || buffer_->rangeStart < 0 || buffer_->rangeStart >= buffer_->size()) return 0;
  return buffer_->rangeStart / 16 * 16;
}

std::int32_t HexViewModel::lastAddress() const {
  if (buffer_ == nullptr) return -1;
  return std::clamp<std::int32_t>(buffer_->rangeEnd, firstAddress(), buffer_->size() - 1);
}

int HexViewModel::lineCount() const {
  return buffer_ == nullptr ? 0 : lineOf(lastAddress()) + 1;
}

int HexViewModel::scrollMaximum() const {
  if (buffer_ == nullptr) return 0;
  const std::int32_t start = buffer_->rangeStart < buffer_->size() ? std::max(0, buffer_->rangeStart) : 0;
  return std::max(0, (lastAddress() - start) / 16 - 3);
}

void HexViewModel::scrollTo(int line) {
  topLine_ = std::clamp(line, 0, scrollMaximum());
}

void HexViewModel::setPageLines(int lines) {
  pageLines_ = std::max(1, lines);
}

HexLine HexViewModel::line(int index) const {
  HexLine result;
  result.address = firstAddress() + index * 16;
  if (buffer_ == nullptr || index < 0) return result;
  result.count = std::clamp(lastAddress() - result.address + 1, 0, 16);
  const AddressRange selected = selection();
  for (int i = 0; i < result.count; ++i) {
    const std::int32_t address = result.address + i;
    result.cells[static_cast<std::size_t>(i)] = {.value = buffer_->at(address),
                                                 .fromFile = buffer_->fileWrote(address),
                                                 .changed = buffer_->changedSinceLoad(address),
                                                 .inField = field_.holds(address),
                                                 .selected = selected.holds(address),
                                                 .differs = comparison_.differs(address)};
  }
  return result;
}

std::string HexViewModel::pageText() const {
  std::string text = "\n\n";
  const int end = std::min(lineCount(), topLine_ + pageLines_);
  for (int i = topLine_; i < end; ++i) text += line(i).hexText() + "\n";
  return text;
}

AddressRange HexViewModel::selection() const {
  if (!anchor_) return {};
  return {std::min(*anchor_, caret_.address), std::max(*anchor_, caret_.address)};
}

void HexViewModel::place(std::int32_t address, bool lowDigit, bool selecting) {
  if (!selecting)
    anchor_.reset();
  else if (!anchor_)
    anchor_ = caret_.address;
  caret_ = {std::clamp(address, firstAddress(), std::max(firstAddress(), lastAddress())), lowDigit};
}

void HexViewModel::move(HexKey key, bool selecting) {
  const std::int32_t at = caret_.address;
  // A page down from the last lines, or a line up from the first one, leaves the caret where it is.
  const auto byLines = [&](int lines) {
    const std::int32_t to = at + lines * 16;
    const bool inside = to >= firstAddress() && to <= lastAddress();
    place(inside ? to : at, caret_.lowDigit, selecting);
  };
  switch (key) {
    case HexKey::Left:
      if (selecting || !caret_.lowDigit) {
        if (at > firstAddress())
          place(at - 1, !selecting, selecting);
        else
          place(at, false, selecting);
      } else {
        place(at, false, false);
      }
      break;
    case HexKey::Right:
      if (selecting)
        place(at + 1, false, true);
      else if (!caret_.lowDigit || at >= lastAddress())
        place(at, true, false);
      else
        place(at + 1, false, false);
      break;
    case HexKey::Up:
      byLines(-1);
      break;
    case HexKey::Down:
      byLines(1);
      break;
    case HexKey::PageUp:
      scrollTo(topLine_ - pageLines_);
      byLines(-std::min(pageLines_, lineOf(at)));
      break;
    case HexKey::PageDown:
      scrollTo(topLine_ + pageLines_);
      byLines(std::min(pageLines_, (lastAddress() - at) / 16));
      break;
    case HexKey::LineStart:
      place(at / 16 * 16, false, selecting);
      break;
    case HexKey::LineEnd:
      place(std::min(at / 16 * 16 + 15, lastAddress()), false, selecting);
      break;
    case HexKey::First:
      place(firstAddress(), false, selecting);
      break;
    case HexKey::Last:
      place(lastAddress(), false, selecting);
      break;
  }
  reveal();
}

void HexViewModel::click(HexSpot spot, bool selecting) {
  place(spot.address, spot.lowDigit, selecting);
}

void HexViewModel::selectSpan(AddressRange span) {
  if (span.empty()) return;
  place(span.first, false, false);
  anchor_ = std::clamp(span.last, firstAddress(), lastAddress());
  reveal();
}

void HexViewModel::keepInRange() {
  scrollTo(topLine_);
  const HexSpot kept = caret_;
  const auto anchor = anchor_;
  place(kept.address, kept.lowDigit, false);
  if (anchor && *anchor >= firstAddress() && *anchor <= lastAddress() && caret_ == kept) anchor_ = anchor;
}

void HexViewModel::reveal() {
  const int line = lineOf(caret_.address);
  if (line < topLine_) scrollTo(line);
  if (line >= topLine_ + pageLines_) scrollTo(line - pageLines_ + 1);
}

std::optional<HexEdit> HexViewModel::digit(char32_t character) const {
  const int digit = digitValue(character);
  if (digit < 0 || buffer_ == nullptr || caret_.address < firstAddress() || caret_.address > lastAddress()) return {};
  if (selection().last > selection().first) return {};
  const int old = buffer_->at(caret_.address);
  const int value = caret_.lowDigit ? (old & 0xF0) | digit : (old & 0x0F) | digit << 4;
  return HexEdit{caret_.address, static_cast<std::uint8_t>(value)};
}

void HexViewModel::stepOn() {
  move(HexKey::Right, false);
}

bool HexViewModel::goTo(const std::string& hexAddress) {
  std::string text = platform::upper(platform::trim(hexAddress));
  if (text.starts_with("0X")) text.erase(0, 2);
  if (text.ends_with("H")) text.pop_back();
  if (text.empty() || text.size() > 6 || text.find_first_not_of(kDigits) != std::string::npos) return false;
  const auto address = static_cast<std::int32_t>(platform::hexOf(text));
  if (buffer_ == nullptr || address < firstAddress() || address > lastAddress()) return false;
  place(address, false, false);
  // The line that was asked for comes up with some lines above it, unless it shows already.
  if (lineOf(address) < topLine_ || lineOf(address) >= topLine_ + pageLines_) scrollTo(lineOf(address) - 3);
  return true;
}

bool HexViewModel::find(const std::vector<std::uint8_t>& pattern, bool forward) {
  if (pattern.empty() || buffer_ == nullptr) return false;
  const auto length = static_cast<std::int32_t>(pattern.size());
  const std::int32_t first = firstAddress();
  const std::int32_t starts = lastAddress() - first + 1 - length + 1;  // places at which the pattern can begin
  if (starts <= 0) return false;
  const auto bytes = buffer_->bytes();
  // When the caret is past the last place where a match can begin, the search goes on from that place.
  const std::int32_t from = std::clamp(caret_.address - first, 0, forward ? starts - 1 : starts);
  for (std::int32_t step = 1; step <= starts; ++step) {
    const std::int32_t offset = (from + (forward ? step : starts - step)) % starts;
    const auto at = bytes.begin() + first + offset;
    if (!std::equal(pattern.begin(), pattern.end(), at)) continue;
    selectSpan({first + offset, first + offset + length - 1});
    return true;
  }
  return false;
}

void HexViewModel::compareWith(std::string name, FileLayer other) {
  comparison_.begin(std::move(name), std::move(other));
  compareAnew();
}

void HexViewModel::compareAnew() {
  if (comparison_.on() && buffer_ != nullptr) comparison_.update(*buffer_, {firstAddress(), lastAddress()});
}

bool HexViewModel::toDifference(bool forward) {
  const auto run = comparison_.next(caret_.address, forward);
  if (run) selectSpan(*run);
  return run.has_value();
}

std::string HexViewModel::copyHex() const {
  const AddressRange span = anchor_ ? selection() : AddressRange{caret_.address, caret_.address};
  std::string text;
  for (std::int32_t i = span.first; i <= span.last && buffer_ != nullptr; ++i) {
    if (i > span.first) text += (i - span.first) % 16 == 0 ? '\n' : ' ';
    addByte(text, buffer_->at(i));
  }
  return text;
}

std::vector<std::uint8_t> findPattern(const std::string& typed, bool asText) {
  if (asText) return {typed.begin(), typed.end()};
  std::string digits;
  for (const char c : typed) {
    if (c == ' ' || c == '\t' || c == ',') {
      if (digits.size() % 2 != 0) digits.insert(digits.size() - 1, "0");  // "1 2" means 01 02
      continue;
    }
    if (digitValue(static_cast<unsigned char>(c)) < 0) return {};
    digits += c;
  }
  if (digits.size() % 2 != 0) digits.insert(digits.size() - 1, "0");
  std::vector<std::uint8_t> bytes;
  for (std::size_t i = 0; i + 1 < digits.size(); i += 2)
    bytes.push_back(static_cast<std::uint8_t>(digitValue(static_cast<unsigned char>(digits[i])) << 4 |
                                              digitValue(static_cast<unsigned char>(digits[i + 1]))));
  return bytes;
}

}  // namespace kvr::images
