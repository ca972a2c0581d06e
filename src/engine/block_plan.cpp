#include "engine/block_plan.h"

#include <algorithm>
#include <string>

#include "platform/text.h"

namespace kvr::engine {
namespace {

constexpr std::int32_t kLowestEnd = 0x27F;
constexpr std::int32_t kLowestCodeEnd = 0x3FF;

std::vector<std::uint8_t> copyOf(const JobImage& image, std::int64_t size, std::int32_t last) {
  std::vector<std::uint8_t> bytes(static_cast<std::size_t>(std::max<std::int64_t>(size, 0)), 0);
  for (std::int64_t i = 0; i < std::min<std::int64_t>(size, last + 1); ++i)
    bytes[static_cast<std::size_t>(i)] = image.at(static_cast<std::int32_t>(i));
  return bytes;
}

SendPlan wholeCode(const JobImage& code, SendRange range) {
  return {.bytes = code.bytes, .ranges = {range}};
}

SendPlan codeAlone(const catalogue::McuRecord& selected, catalogue::FirmwareVersion version, const JobImage& code) {
  const std::int32_t limit = codeLimit(selected, version);
  const std::int32_t last = std::min(std::max(code.rangeEnd, kLowestCodeEnd), limit);
  const std::int32_t first = std::min(std::max(code.rangeStart, 0), limit);
  return wholeCode(code, {true, first, last});
}

SendPlan codeAndData(const catalogue::McuRecord& selected, const JobImage& code, const JobImage& eeprom) {
  const std::int32_t dataStart = selected.dataStart, dataLast = eeprom.rangeEnd;
  SendPlan plan;
  plan.bytes = copyOf(code, dataStart + dataLast + 512 + 1, selected.apEnd);
  for (std::int32_t i = 0; i <= dataLast; ++i) plan.bytes[static_cast<std::size_t>(dataStart + i)] = eeprom.at(i);
  plan.ranges = {{true, 0, selected.apEnd + 1}, {true, dataStart, dataStart + dataLast}};
  return plan;
}

}  // namespace

std::int32_t codeLimit(const catalogue::McuRecord& selected, catalogue::FirmwareVersion version) {
  const catalogue::FamilyTraits& traits = traitsOf(selected);
  return (version <= catalogue::FirmwareVersion{5, 0} ? traits.oldCode : sizeFor(selected, traits.code)) - 1;
}

SendPlan planSends(const catalogue::McuRecord& selected, catalogue::FirmwareVersion version, int blockSize,
                   int frameSize, const JobImage& code, const JobImage& eeprom) {
  const auto shape = traitsOf(selected).sends;
  if (shape == catalogue::SendShape::WholeImage)
    return wholeCode(code, {blockSize > frameSize, code.rangeStart, code.rangeEnd});
  if (shape == catalogue::SendShape::UpToDataEnd)
    return wholeCode(code, {true, std::max(code.rangeStart, 0), std::min(code.rangeEnd, selected.dataEnd)});
  if (!eeprom.loaded) return codeAlone(selected, version, code);
  if (eeprom.rangeEnd > 0) return codeAndData(selected, code, eeprom);
  return {.bytes = copyOf(code, code.rangeEnd + 512 + 1, code.rangeEnd), .ranges = {{true, 0, code.rangeEnd + 1}}};
}

bool SendPlan::cut(const SendRange& range, int blockSize) const {
  return roundedEnd(range.last, blockSize) > highest;
}

std::int32_t SendPlan::workingEnd(const SendRange& range, int blockSize) const {
  return std::min(roundedEnd(range.last, blockSize), highest);
}

std::int64_t SendPlan::bytesSent(int blockSize) const {
  std::int64_t count = 0;
  for (const SendRange& range : ranges)
    for (const auto& block : blocksOf(range.first, workingEnd(range, blockSize), blockSize))
      count += block.last - block.first + 1;
  return count;
}

bool SendPlan::carries(std::int64_t address, std::uint8_t value, int blockSize) const {
  const bool inside = std::any_of(ranges.begin(), ranges.end(), [&](const SendRange& range) {
    const std::int64_t blockEnd = (std::int64_t{workingEnd(range, blockSize)} / blockSize + 1) * blockSize - 1;
    return address >= range.first && address <= blockEnd;
  });
  return inside && at(address) == value;
}

std::int64_t lostAtLoad(const JobImage& image) {
  std::int64_t count = image.blanked;
  for (std::int32_t at = image.rangeEnd + 1; at <= image.heldEnd; ++at)
    if (image.at(at) != image.fill) ++count;
  return count;
}

LeftOut leftOutOf(const SendPlan& plan, const Job& job) {
  LeftOut out;
  const auto look = [&](const JobImage& image, std::int32_t base) {
    const std::int32_t last = std::max(image.rangeEnd, image.heldEnd);
    for (std::int32_t at = std::max(image.rangeStart, 0); at <= last; ++at) {
      const std::uint8_t byte = image.at(at);
      if (byte == image.fill || plan.carries(base + at, byte, job.model.blockSize)) continue;
      if (out.bytes++ == 0) out.from = base + at;
    }
  };
  look(job.code, 0);
  if (job.data.loaded) look(job.data, job.record().dataStart);
  if (out.bytes == 0) out.from = job.code.rangeEnd + 1;
  out.bytes += job.code.blanked + (job.data.loaded ? job.data.blanked : 0);
  return out;
}

bool carriesNumbers(const SendPlan& plan, const Job& job) {
  const auto all = [&](const std::vector<AddressRange>& fields, const JobImage& image, std::int32_t base) {
    for (const AddressRange& field : fields)
      for (std::int32_t at = field.first; at <= field.last; ++at)
        if (!plan.carries(base + at, image.at(at), job.model.blockSize)) return false;
    return true;
  };
  return all(job.codeNumbers, job.code, 0) && all(job.dataNumbers, job.data, job.record().dataStart);
}

std::int32_t roundedEnd(std::int32_t last, int blockSize) {
  return std::max((last / blockSize + 1) * blockSize - 1, kLowestEnd);
}

std::vector<AddressRange> blocksOf(std::int32_t first, std::int32_t workingEnd, int blockSize) {
  std::vector<AddressRange> blocks;
  for (std::int32_t block = first / blockSize; block <= workingEnd / blockSize; ++block) {
    const std::int32_t start = blocks.empty() ? first : block * blockSize;
    blocks.push_back({start, (block + 1) * blockSize - 1});
  }
  return blocks;
}

std::vector<FrameSpan> framesOf(AddressRange block, bool split, int frameSize) {
  if (!split) return {{block.first, block.last - block.first + 1}};
  std::vector<FrameSpan> frames;
  for (std::int32_t start = block.first; start <= block.last; start = (start + frameSize) / frameSize * frameSize) {
    const bool isLast = start + frameSize - 1 >= block.last;
    frames.push_back({start, isLast ? block.last - start + 1 : frameSize});
  }
  return frames;
}

int ProgressScale::valueAt(std::int32_t end) const {
  return by256 ? static_cast<int>(platform::roundEven(end / 256.0)) : end;
}

ProgressScale progressScale(std::int32_t first, std::int32_t last) {
  if (first > 0x7FFF || last > 0x7FFF) return {first / 256, last / 256 + 1, true};
  return {first, last + 1, false};
}

std::string kilobyteText(std::int32_t bytes) {
  const std::string text = platform::fixedText(bytes / 1024.0, 3) + "K";
  return text.starts_with("0.") ? text.substr(1) : text;
}

}  // namespace kvr::engine
