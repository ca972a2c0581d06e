#include "images/range_rules.h"

#include <algorithm>

#include "platform/text.h"

namespace kvr::images {

using catalogue::McuRecord;

namespace {

constexpr std::string_view kCut = "The file is over the valid scope, and the exceeding part has been cleared.";

// One file being judged. The verdict takes shape while the rules are applied.
class Judge {
 public:
  Judge(const McuRecord& model, const catalogue::IspRange& range, const LoadedFile& file,
        std::span<const std::uint8_t> bytes)
      : model_(model), range_(range), file_(file), bytes_(bytes) {
    verdict_.fileEnd = file.fileEnd;
    verdict_.sumBox = file.kind;
    verdict_.sumText = sumDigits(file.sum) + "H       ";
  }

  RangeVerdict run() {
    if (!catalogue::isSelfWriting(model_) && catalogue::hasDataFile(model_)) {
      separateFiles();
      return std::move(verdict_);
    }
    withoutDataMemory();
    if (!traitsOf(model_).firstGeneration())
      oneFile();
    else if (file_.format == FileFormat::Hex)
      sharedMapHex();
    else
      sharedMapBinary();
    return std::move(verdict_);
  }

 private:
  bool isCode() const { return file_.kind == ImageKind::Code; }
  bool holdsData(std::int32_t first, std::int32_t last) const {
    const auto size = static_cast<std::int32_t>(bytes_.size());
    for (std::int32_t i = std::max(first, 0); i <= last && i < size; ++i)
      if (bytes_[static_cast<std::size_t>(i)] != 0 && !isCleared(i)) return true;
    return false;
  }
  bool isCleared(std::int32_t address) const {
    return std::any_of(verdict_.cleared.begin(), verdict_.cleared.end(),
                       [&](const auto& span) { return span.holds(address); });
  }
  void clear(std::int32_t first, std::int32_t last) {
    if (first <= last) verdict_.cleared.push_back({first, last});
  }

  void separateFiles() {
    if (!isCode()) verdict_.sumText = sumDigits(file_.sum) + "H";
    const std::int32_t end = isCode() ? model_.apEnd : model_.dataEnd - model_.dataStart;
    if (verdict_.fileEnd <= end) return;
    verdict_.fileEnd = end;
    verdict_.messages.emplace_back(kCut);
  }

  void withoutDataMemory() {
    if (model_.dataEnd - model_.dataStart >= kUsableData || verdict_.fileEnd <= model_.apEnd) return;
    verdict_.fileEnd = model_.apEnd;
    verdict_.messages.emplace_back(kCut);
    clear(model_.apEnd + 1, model_.dataStart - 1);
  }

  // The Data Memory follows the code; between them may be a gap that no chip has.
  void oneFile() {
    std::string gap;
    std::string data;
    std::string beyond;
    const std::int32_t gapStart = model_.apEnd + 1;
    const std::int32_t gapEnd = model_.dataStart - 1;
    if (!catalogue::isSelfWriting(model_) && holdsData(gapStart, gapEnd))
      gap = "    File over the valid scope(" + platform::hexText(static_cast<std::uint32_t>(gapStart)) + " -- " +
            platform::hexText(static_cast<std::uint32_t>(gapEnd)) + ").";
    clear(gapStart, gapEnd);
    const bool hasData = file_.format == FileFormat::Hex ? holdsData(model_.dataStart, model_.dataEnd)
                                                         : verdict_.fileEnd > model_.dataStart;
    if (hasData) data = "Data Memory contain datas.";
    if (verdict_.fileEnd > model_.dataEnd) {
      beyond = "    File over the valid scope.";
      verdict_.fileEnd = model_.dataEnd;
    }
    if (gap.empty() && data.empty() && beyond.empty()) return;
    // "Continue" is under the middle of the longest line; each counts with its line end of two characters.
    std::size_t longest = 0;
    for (const auto* line : {&gap, &data, &beyond})
      if (!line->empty()) longest = std::max(longest, line->size() + 2);
    const auto blanks = std::max<std::int64_t>(0, platform::roundEven(static_cast<double>(longest) / 2) - 5);
    std::string text;
    if (!gap.empty()) text += gap + "\n";
    if (!data.empty()) text += data + "\n\n";
    if (!beyond.empty()) text += beyond + "\n\n";
    verdict_.messages.push_back(text + "\n" + std::string(static_cast<std::size_t>(blanks), ' ') + "Continue");
  }

  void sharedMapHex() {
    verdict_.sumBox = ImageKind::Code;
    const bool early = !traitsOf(model_).dataMemory;
    const std::int32_t top = range_.top;
    std::int32_t maxAddr = verdict_.fileEnd;
    bool over = false;
    bool dataHit = false;
    if (maxAddr >= range_.ispStart) {
      over = true;
      maxAddr = range_.ispStart - 1;
    }
    if (!model_.apUpToIsp && maxAddr > top) (early ? over : dataHit) = true;
    if (early) {
      if (!over && holdsData(top + 1, range_.ispStart - 1)) {
        over = true;
        clear(top + 1, range_.ispStart - 1);
      }
    } else if (!model_.quirks.splitData) {
      if (!dataHit) dataHit = holdsData(top + 1, range_.ispStart - 1);
    } else {
      over = holdsData(top + 1, 32767);
      dataHit = holdsData(32768, range_.ispStart - 1);
      clear(top + 1, 32767);
    }
    if (over) verdict_.fileEnd = model_.dataEnd;
    report(over ? " File over the valid scope." : "", dataHit ? " Data Memory contain datas." : "", 8);
  }

  void sharedMapBinary() {
    const bool early = !traitsOf(model_).dataMemory;
    const std::int32_t top = range_.top;
    bool over = false;
    bool dataHit = false;
    if (model_.apUpToIsp || early) {
      over = verdict_.fileEnd > top;
      if (over) verdict_.fileEnd = top;
      if (!model_.apUpToIsp) clear(top + 1, model_.bootStart - 1);
    } else {
      dataHit = verdict_.fileEnd > top;
      over = verdict_.fileEnd >= range_.ispStart;
      if (over) verdict_.fileEnd = range_.ispStart - 1;
    }
    if (model_.quirks.splitData) {
      over = file_.fileStart <= 32767 && verdict_.fileEnd > top;
      dataHit = file_.fileStart > 32767 || verdict_.fileEnd > 32767;
      clear(top + 1, 32767);
    } else if (over) {
      verdict_.fileEnd = model_.dataEnd;
    }
    report(over ? "    File over the valid scope." : "", dataHit ? "   Data Memory contain datas." : "", 10);
  }

  void report(const std::string& over, const std::string& data, std::size_t blanks) {
    if (over.empty() && data.empty()) return;
    std::string text;
    if (!over.empty()) text += over + "\n";
    if (!over.empty() && !data.empty()) text += "\n\n";
    if (!data.empty()) text += data + "\n";
    verdict_.messages.push_back(text + "\n" + std::string(blanks, ' ') + "Continue");
  }

  const McuRecord& model_;
  const catalogue::IspRange& range_;
  const LoadedFile& file_;
  std::span<const std::uint8_t> bytes_;
  RangeVerdict verdict_;
};

}  // namespace

std::string sumDigits(std::int64_t sum) {
  const std::string digits = platform::hexText(static_cast<std::uint32_t>(sum), 7);
  return digits.substr(digits.size() - 7);
}

RangeVerdict judgeRange(const McuRecord& model, const catalogue::IspRange& range, const LoadedFile& file,
                        std::span<const std::uint8_t> bytes) {
  return Judge(model, range, file, bytes).run();
}

std::string checkStart(const McuRecord& model, ImageKind kind, std::int64_t start) {
  const std::int64_t last = kind == ImageKind::Code ? model.dataEnd : model.dataEnd - model.dataStart;
  return start > last ? "Start Buffer Address exceeded the valid scope. \n" : "";
}

std::string loadTitle(FileFormat format) {
  return format == FileFormat::Hex ? "Open HEX file" : "Open BIN file";
}

}  // namespace kvr::images
