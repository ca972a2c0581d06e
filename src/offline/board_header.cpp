#include "offline/board_header.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "engine/board_crc.h"
#include "offline/byte_fields.h"
#include "platform/text.h"

namespace kvr::offline {
namespace {

using catalogue::McuRecord;
using Header = std::span<std::uint8_t>;

constexpr int kNameSize = 31;
constexpr std::int64_t kMainAreaEnd = 60415;  // 4000h + 43 KB - 1
constexpr std::int64_t kLargestRange = 63487;
constexpr int kOptionsAt = 48;
constexpr int kOptionsSize = 16;

std::uint8_t flag(bool on) {
  return on ? 0xFF : 0x00;
}

void putCode(Header header, std::size_t at, std::string_view code) {
  if (code.empty()) return;
  header[at] = static_cast<std::uint8_t>(platform::hexOf(code.substr(0, 2)));
  header[at + 1] =
      static_cast<std::uint8_t>(platform::hexOf(code.substr(code.size() - std::min<std::size_t>(code.size(), 2))));
}

void putIdentity(const BoardInputs& inputs, Header header) {
  const McuRecord& record = *inputs.record;
  std::copy_n(inputs.device.begin(), std::min<std::size_t>(inputs.device.size(), kNameSize), header.begin());
  putCode(header, 32, record.code);
  putCode(header, 34, record.altCode);
  header[36] = flag(record.extSession);
  header[37] = flag(record.parityUsed);
  header[38] = flag(record.parityEven);
  header[39] = flag(record.frame2);
  header[40] = flag(record.noOptions);
  header[41] = flag(record.topBlockFree);
  putBig(header, 42, 1, inputs.pins);
  header[43] = flag(record.noDataFile);
  for (std::size_t i = 0; i < inputs.sorter.size(); ++i)
    if (inputs.sorter[i]) header[44] |= static_cast<std::uint8_t>(1 << i);
}

// Which option byte stands at which place, by family.
struct OptionPlace {
  int offset;
  int element;
};
constexpr std::array kFirstGeneration{OptionPlace{49, 1}};
constexpr std::array kElmToHazel{OptionPlace{48, 2},  OptionPlace{49, 3},  OptionPlace{50, 8},
                                 OptionPlace{51, 10}, OptionPlace{52, 11}, OptionPlace{53, 0}};
constexpr std::array kIvyAndUp{OptionPlace{48, 0}, OptionPlace{49, 1}, OptionPlace{50, 2},
                               OptionPlace{51, 3}, OptionPlace{56, 8}, OptionPlace{57, 9}};

std::span<const OptionPlace> optionPlaces(const catalogue::FamilyTraits& traits) {
  if (traits.cedarOptions()) return kFirstGeneration;
  if (traits.shortOptions()) return kElmToHazel;
  if (traits.longOptions()) return kIvyAndUp;
  return {};
}

void putOptions(const BoardInputs& inputs, Header header) {
  std::fill_n(header.begin() + kOptionsAt, kOptionsSize, std::uint8_t{0xFF});
  for (const OptionPlace& place : optionPlaces(traitsOf(*inputs.record)))
    header[place.offset] = inputs.options[place.element];
}

void putCodeAreas(const CodeFit& fit, Header header) {
  const std::int64_t mainLast = std::min<std::int64_t>(fit.codeLast + kMainCodeAt, kMainAreaEnd);
  putBig(header, 64, 3, kMainCodeAt);
  putBig(header, 67, 3, mainLast);
  putBig(header, 73, 3, mainLast - kMainCodeAt);
  putBig(header, 79, 3, kMainAreaEnd);
  putBig(header, 88, 3, kSecondCodeAt);
  putBig(header, 91, 3, kSecondCodeAt + kSecondCodeSize - 1);
  putBig(header, 94, 3, kMainCodeSize);
  putBig(header, 97, 3, kMainCodeSize + kSecondCodeSize - 1);
  putBig(header, 112, 3, fit.codeLast);
  header[120] = 0xF3;
}

void putArea(Header header, std::size_t at, std::int64_t first, std::int64_t last, int unit) {
  putBig(header, at, 3, first);
  putBig(header, at + 3, 3, last);
  putBig(header, at + 6, 2, platform::roundEven(static_cast<double>(last - first + 1) / unit));
}

void putAreas(const McuRecord& record, Header header) {
  const catalogue::FamilyTraits& traits = traitsOf(record);
  const int unit = traits.blockSize;
  putBig(header, 150, 2, unit);
  putArea(header, 152, record.apStart, std::min(record.apEnd, modelLimit(record)), unit);
  if (traits.gapIsCode) putArea(header, 160, record.apEnd + 1, record.dataStart - 1, unit);
  if (traits.dataMemory) {
    putArea(header, 168, record.dataStart, record.dataEnd, unit);
  } else {
    putArea(header, 168, 0, 0, unit);
  }
  putArea(header, 176, record.bootStart, record.bootEnd, unit);
}

void putRange(Header header, std::size_t at, std::int64_t a, std::int64_t b, std::int64_t c) {
  putBig(header, at, 3, a);
  putBig(header, at + 3, 3, b);
  putBig(header, at + 6, 3, c);
}

void putRanges(const McuRecord& record, const FileBuffer& file, Header header) {
  const std::int64_t fileLast = file.last;
  const auto held = [](std::int64_t address) { return std::min(address, kLargestRange); };
  putRange(header, 184, 0, held(traitsOf(record).gapIsCode ? record.dataStart - 1 : record.apEnd),
           held(record.dataEnd));
  putRange(header, 202, fileLast + 1, std::max(held(record.dataStart - 1), fileLast),
           std::max(held(record.dataEnd), fileLast));
  if (!record.altCode.empty()) putRange(header, 211, fileLast, fileLast, fileLast);
}

}  // namespace

int modelLimit(const McuRecord& record) {
  return sizeFor(record, traitsOf(record).boardCode);
}

CodeFit fitCode(const McuRecord& record, std::int64_t capacity, const FileBuffer& file) {
  CodeFit fit;
  fit.capacity = std::min<std::int64_t>(capacity, modelLimit(record));
  fit.codeLast = file.last;
  if (fit.codeLast >= fit.capacity) {
    fit.codeLast = fit.capacity - 1;
    fit.message = "The maximum size of downloading code and data is " +
                  platform::numberText(static_cast<double>(fit.capacity) / 1024) +
                  "K, The exceeding part won't be downloaded.";
  }
  return fit;
}

void fillBoardHeader(const BoardInputs& inputs, const FileBuffer& file, const CodeFit& fit, Header header) {
  putIdentity(inputs, header);
  putOptions(inputs, header);
  putCodeAreas(fit, header);
  putAreas(*inputs.record, header);
  putRanges(*inputs.record, file, header);
  const std::uint16_t crc = engine::boardCrc(header.first(kHeaderSize - 2));
  header[254] = static_cast<std::uint8_t>(crc);
  header[255] = static_cast<std::uint8_t>(crc >> 8);
}

void placeIncrement(bool dataField, std::span<const std::uint8_t> block, Header header) {
  std::ranges::copy(block, header.begin() + (dataField ? 220 : 128));
}

void placeNextValue(bool dataField, std::span<const std::uint8_t> value, Header header) {
  std::ranges::copy(value, header.begin() + (dataField ? 236 : 144));
}

}  // namespace kvr::offline
