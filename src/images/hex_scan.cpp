#include "images/hex_scan.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>

namespace kvr::images {
namespace {

constexpr int kMaxPairs = 261;
constexpr std::uint8_t kNoDigit = 0xFF;

constexpr std::array<std::uint8_t, 256> digitTable() {
  std::array<std::uint8_t, 256> table{};
  table.fill(kNoDigit);
  for (int i = 0; i < 10; ++i) table[static_cast<std::size_t>('0' + i)] = static_cast<std::uint8_t>(i);
  for (int i = 0; i < 6; ++i) {
    table[static_cast<std::size_t>('A' + i)] = static_cast<std::uint8_t>(10 + i);
    table[static_cast<std::size_t>('a' + i)] = static_cast<std::uint8_t>(10 + i);
  }
  return table;
}
constexpr auto kDigitOf = digitTable();

// One record: the pairs of a line, decoded. A pair with a bad digit, or one that is not there, is 0.
struct Record {
  std::array<std::uint8_t, kMaxPairs + 1> pairs;  // those in use, and a zero after them
  int last = 0;                                   // index of the last pair before the check sum; below 3: no data

  int count() const { return std::max(0, std::min(last, kMaxPairs - 1) - 3); }  // data bytes
  std::uint8_t pair(int index) const {
    return index >= 0 && index < kMaxPairs ? pairs[static_cast<std::size_t>(index)] : 0;
  }
};

// True: the check sum holds.
bool decode(std::string_view digits, Record& record) {
  const auto length = static_cast<std::int64_t>(digits.size());
  // Half of an odd length, rounded to the even whole number.
  std::int64_t last = length / 2 - 2;
  if (length % 2 != 0 && last % 2 != 0) ++last;
  record.last = static_cast<int>(std::min<std::int64_t>(last, 1 << 20));

  const auto whole = static_cast<std::size_t>(std::min<std::int64_t>(length / 2, kMaxPairs));
  const auto* text = reinterpret_cast<const unsigned char*>(digits.data());
  unsigned sum = 0;
  std::size_t i = 0;
  for (; i < whole; ++i) {
    const std::uint8_t high = kDigitOf[text[2 * i]];
    const std::uint8_t low = kDigitOf[text[2 * i + 1]];
    const auto value = ((high | low) & 0x80) != 0 ? std::uint8_t{0} : static_cast<std::uint8_t>(high << 4 | low);
    record.pairs[i] = value;
    sum += value;
  }
  const auto used = static_cast<std::size_t>(std::max<std::int64_t>(4, std::min<std::int64_t>(last + 2, kMaxPairs)));
  for (; i < used; ++i) record.pairs[i] = 0;
  // Pairs after the check sum do not count; with an even length there are none.
  for (auto after = static_cast<std::size_t>(std::max<std::int64_t>(0, last + 2)); after < whole; ++after)
    sum -= record.pairs[after];
  return (sum & 0xFF) == 0;
}

std::string printable(std::string_view line) {
  constexpr std::size_t kShown = 600;  // a message box is no place for more
  std::string text(line.substr(0, kShown));
  for (char& c : text)
    if (c < 0x20 || c > 0x7E) c = '?';
  return line.size() > kShown ? text + "..." : text;
}

class Scanner {
 public:
  Scanner(std::int32_t startOffset, std::int32_t limit, std::int32_t size)
      : offset_(startOffset < 0 ? startOffset + 65536 : startOffset), limit_(std::clamp(limit, 0, size)) {
    scan_.layer.bytes.resize(static_cast<std::size_t>(size));
    scan_.layer.written.resize(static_cast<std::size_t>(size));
  }

  // False: the end record.
  bool line(std::string_view text) {
    if (text.empty() || text.front() != ':') return true;
    while (text.back() == ' ' || text.back() == '\t') text.remove_suffix(1);  // editors leave blanks at the end
    ++scan_.records;
    if (!decode(text.substr(1), record_)) {
      if (++scan_.badSums <= 3) scan_.badLines.push_back(printable(text));
    }
    const int type = record_.pair(3);
    ++scan_.ofType[static_cast<std::size_t>(type)];
    if (type == 1) {
      scan_.endRecord = true;
      return false;
    }
    const bool extended = type >= 2 && type <= 5;
    if (extended) ++scan_.extendedRecords;
    data(extended ? kExtended : kData);
    return true;
  }

  HexScan take() { return std::move(scan_); }

 private:
  // What wrote a byte; an address record under real data is no overlap.
  enum Source : std::uint8_t { kData = 1, kExtended = 2 };

  void data(Source source) {
    const int count = record_.count();
    if (count == 0) return;
    const std::int32_t address = record_.pair(1) * 256 + record_.pair(2) + offset_;
    const std::uint8_t* bytes = record_.pairs.data() + 4;
    unsigned sum = 0;
    for (int i = 0; i < count; ++i) sum += bytes[i];
    scan_.sum += sum;
    scan_.maxAddr = std::max(scan_.maxAddr, address + count - 1);
    const int kept = std::clamp(limit_ - address, 0, count);
    scan_.droppedBytes += count - kept;
    if (kept == 0) return;
    std::uint8_t* written = scan_.layer.written.data() + address;
    if (std::memchr(written, kData, static_cast<std::size_t>(kept)) != nullptr) noteOverlap(address, kept);
    std::memset(written, source, static_cast<std::size_t>(kept));
    std::memcpy(scan_.layer.bytes.data() + address, bytes, static_cast<std::size_t>(kept));
  }

  void noteOverlap(std::int32_t address, int count) {
    scan_.overlaps.resize(scan_.layer.written.size());
    for (auto i = static_cast<std::size_t>(address); i < static_cast<std::size_t>(address + count); ++i) {
      if (scan_.layer.written[i] != kData) continue;
      ++scan_.overlappingBytes;
      scan_.overlaps[i] = 1;
    }
  }

  HexScan scan_;
  Record record_;
  std::int32_t offset_;
  std::int32_t limit_;
};

}  // namespace

HexScan scanHex(std::span<const std::uint8_t> text, std::int32_t startOffset, std::int32_t limit, std::int32_t size) {
  Scanner scanner(startOffset, limit, size);
  std::string_view rest(reinterpret_cast<const char*>(text.data()), text.size());
  if (rest.starts_with("\xEF\xBB\xBF")) rest.remove_prefix(3);  // an editor's mark would hide the first record
  while (!rest.empty()) {
    const auto end = std::find_if(rest.begin(), rest.end(), [](char c) { return c == '\n' || c == '\r'; });
    const auto length = static_cast<std::size_t>(end - rest.begin());
    if (!scanner.line(rest.substr(0, length))) break;
    rest.remove_prefix(std::min(rest.size(), length + 1));
  }
  return scanner.take();
}

}  // namespace kvr::images
