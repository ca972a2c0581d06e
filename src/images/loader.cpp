#include "images/loader.h"

#include <algorithm>

#include "images/range_rules.h"
#include "platform/text.h"

namespace kvr::images {

namespace {

std::string fileNameOf(const std::string& path) {
  return path.substr(path.find_last_of("/\\") + 1);
}

}  // namespace

bool isProjectPath(const std::string& path) {
  return platform::upper(path).find(".KVR") != std::string::npos;
}

Loader::Loader(platform::World& world, const catalogue::SelectedModel& selected, ImagePanel& panel, ImageState& state,
               BufferViews& views, SerialCounters& counters)
    : world_(world), selected_(selected), panel_(panel), state_(state), views_(views), counters_(counters) {
  panel_.comLoadFile.onClick = [this] { comLoadFile_Click(); };
  panel_.comLoadDataFile.onClick = [this] { comLoadDataFile_Click(); };
}

void Loader::comLoadFile_Click() {
  pick("AP", state_.CodeBuffer);
}
void Loader::comLoadDataFile_Click() {
  pick("DATA", state_.EepromBuffer);
}

void Loader::pick(const std::string& kind, ImageBuffer& buffer) {
  std::string path;
  runAlone(alone, [&] {
    path = askFileName(kind);
    if (path.empty() && buffer.isCode()) noteCodePath(world_.files.programFolder());
  });
  open(path, buffer);
}

std::string Loader::askFileName(const std::string& kind) {
  const bool isCode = kind == "AP";
  std::string last = world_.store.getOr("Settings", isCode ? "FilePath" : "DataFilePath", "");
  if (last.empty()) last = world_.files.programFolder();
  const std::string path =
      world_.dialogs.openFile({.title = isCode ? "Open file ( *.hex or *.bin )" : "Open Data file ( *.hex or *.bin )",
                               .filter = "(*.hex, *.bin)|*.hex;*.bin|(*.bin)|*.bin|(*.hex)|*.hex|All Files (*.*)|*.*",
                               .initialFolder = last,
                               .fileName = world_.files.fileExists(last) ? fileNameOf(last) : ""});
  if (path.empty() || path.back() == '\\' || path.back() == '/') return {};
  remember(path, isCode);
  return path;
}

void Loader::remember(const std::string& path, bool isCode) {
  state_.lastFileName = path;
  if (isCode) {
    panel_.Frame7.setCaption("Program File: " + path);
    noteCodePath(path);
  } else {
    panel_.frmDataFlash.setCaption("Data File: " + path);
    world_.store.set("Settings", "DataFilePath", path);
  }
}

void Loader::noteCodePath(const std::string& path) {
  world_.store.set("Settings", "FilePath", path);
  reloadPath_ = path;
}

LoadResult Loader::open(const std::string& path, ImageBuffer& buffer) {
  LoadResult result = LoadResult::Refused;
  if (path.empty()) return result;
  const bool isProject = isProjectPath(path);
  const bool ran = runAlone(alone, [&] {
    remember(path, buffer.isCode());
    if (!isProject) result = loadImage(path, buffer);
  });
  if (ran && isProject && openProject) openProject(path);
  return result;
}

// False: the start address lies outside the model's memory; the person has been told.
bool Loader::startAt(ImageBuffer& buffer) {
  const bool isCode = buffer.isCode();
  const std::int64_t start = platform::hexOf((isCode ? panel_.txtAP_FileStart : panel_.txtDataFileStart).trimmed());
  const std::string fault = checkStart(selected_.record, isCode, start);
  if (!fault.empty()) {
    world_.dialogs.message(platform::kTitle, fault, platform::BoxIcon::Warning);
    return false;
  }
  buffer.startOffset = static_cast<std::int32_t>(start);
  buffer.clearFirst = (isCode ? panel_.cheClearAP_Buffer : panel_.cheClearDataBuffer).value();
  return true;
}

// The buffer as the file will find it: as it is, for a merge, or empty.
void Loader::prepare(ImageBuffer& buffer) {
  if (state_.imageValid && !buffer.clearFirst) {
    buffer.mergeFile();
    return;
  }
  state_.imageValid = false;
  buffer.loaded = false;
  buffer.bounds() = {.fileStart = kNoRangeStart, .fileEnd = 0, .rangeStart = kNoRangeStart, .rangeEnd = 0};
  buffer.fill(0);
}

LoadResult Loader::loadImage(const std::string& path, ImageBuffer& buffer) {
  if (path.empty() || !startAt(buffer)) return LoadResult::Refused;
  prepare(buffer);
  counters_.forgetArmed();
  bool showEnd = false;
  const LoadResult result = loadFileByType(path, buffer, showEnd);

  panel_.cheAuto_Increase.setValue(false);
  panel_.cheData_Auto_Increase.setValue(false);
  counters_.cheAuto_Increase_Click();
  counters_.cheData_Auto_Increase_Click();
  if (result == LoadResult::Stopped) return result;
  if (showEnd) views_.showEnd(viewOf(buffer));
  views_.showRange(viewOf(buffer), buffer.isCode() ? counters_.code : counters_.data);
  showLengths();
  if (onLoaded) onLoaded();
  return result;
}

// What one reading of a file gave.
struct Loader::Read {
  bool readable = false;
  FormatChoice choice;
  FileLayer layer;
  LoadedFile file;
  HexScan hex;  // without its layer; empty for a binary
  FileInfo info;
  std::string stamp;
};

Loader::Read Loader::read(const std::string& path, const ImageBuffer& buffer) const {
  Read result;
  result.stamp = world_.files.stamp(path).value_or("");
  const auto bytes = world_.files.read(path, kReadLimit + 1);
  result.readable = bytes.has_value();
  auto all = bytes ? std::span<const std::uint8_t>(*bytes) : std::span<const std::uint8_t>{};
  result.info.more = all.size() > kReadLimit;
  all = all.first(std::min(all.size(), kReadLimit));
  result.info.size = all.size();
  result.info.crc = crc32(all);
  result.info.changedAt = world_.files.changedAt(path);
  result.choice = chooseFormat(path, all);
  result.file.format = result.choice.format;
  result.file.isCode = buffer.isCode();
  if (result.choice.format == FileFormat::Hex) {
    result.hex = scanHex(all, buffer.startOffset, selected_.record.bootEnd + 1, buffer.size());
    result.layer = std::move(result.hex.layer);
    result.file.fileStart = buffer.startOffset;
    result.file.fileEnd = std::max(511, result.hex.maxAddr);
    result.file.sum = result.hex.sum;
    result.info.extendedRecords = result.hex.extendedRecords;
    result.info.overlappingBytes = result.hex.overlappingBytes;
    result.info.droppedBytes = result.hex.droppedBytes;
    result.info.missingEnd = !result.hex.endRecord;
    result.info.noRecords = result.hex.records == 0;
  } else {
    BinaryScan scan = scanBinary(all, buffer.startOffset, buffer.size());
    result.layer = std::move(scan.layer);
    result.file.fileStart = scan.fileStart;
    result.file.fileEnd = scan.fileEnd;
    result.file.sum = scan.sum;
    result.info.droppedBytes = scan.droppedBytes;
  }
  return result;
}

LoadResult Loader::loadFileByType(const std::string& path, ImageBuffer& buffer, bool& showEnd) {
  world_.dialogs.setBusy(true);
  Read file = read(path, buffer);
  world_.dialogs.setBusy(false);
  platform::Label& info = buffer.isCode() ? panel_.labFileInfo : panel_.labDataFileInfo;
  info.setCaption(file.readable ? infoText(file.info) : "The file cannot be read.");
  if (buffer.isCode()) codeFile_ = {path, file.stamp, file.hex.endRecord};
  showEnd = file.choice.showEnd;
  if (!file.readable && file.choice.format == FileFormat::Hex) return LoadResult::Unreadable;
  if (!acceptBadSums(path, file.hex)) {
    clearBuffer(0, buffer);
    state_.imageValid = false;
    return LoadResult::Stopped;
  }
  judge(file, buffer);
  return file.readable ? LoadResult::Loaded : LoadResult::Unreadable;
}

// False: the person wants none of the file.
bool Loader::acceptBadSums(const std::string& path, const HexScan& scan) {
  for (const std::string& line : scan.badLines)
    world_.dialogs.message(path, "The checksum is incorrect:\n\n" + line, platform::BoxIcon::Warning);
  if (scan.badSums < 3) return true;
  return world_.dialogs.askYesNo(path,
                                 "Not test Checksum any more. Continue loading the file, Please input Y.\n\n"
                                 "Stop loading the file. Return immediately, please input N");
}

// Lays the file over the buffer and holds it against the model's memory.
void Loader::judge(Read& read, ImageBuffer& buffer) {
  buffer.fileStart = read.file.fileStart;
  buffer.fileEnd = read.file.fileEnd;
  buffer.sum = static_cast<std::int32_t>(read.file.sum);
  buffer.lay(read.layer);
  const RangeVerdict verdict = judgeRange(selected_.record, selected_.range, read.file, buffer.bytes());
  buffer.fileEnd = verdict.fileEnd;
  for (const AddressSpan& span : verdict.cleared) buffer.blank(span.first, span.last);
  (verdict.sumInCodeBox ? panel_.txtFileCheckSum : panel_.txtDataFileCheckSum).setText(verdict.sumText);
  for (const std::string& text : verdict.messages)
    world_.dialogs.message(loadTitle(read.file.format), text, platform::BoxIcon::Warning);
  state_.imageValid = true;
  buffer.loaded = true;
}

void Loader::clearBuffer(std::uint8_t fill, ImageBuffer& buffer) {
  buffer.bounds() = {};
  buffer.sum = 0;
  buffer.loaded = false;
  const bool isCode = buffer.isCode();
  if (isCode) {
    state_.imageValid = false;
    codeFile_ = {};  // what comes into the buffer now may be no file's: a project's image is not watched
  }
  buffer.fill(fill);
  views_.showCleared(viewOf(buffer));
  (isCode ? panel_.Frame7 : panel_.frmDataFlash).setCaption(isCode ? "Program File: " : "Data File: ");
  (isCode ? panel_.txtFileCheckSum : panel_.txtDataFileCheckSum).clear();
  (isCode ? panel_.labFileInfo : panel_.labDataFileInfo).setCaption("");
  showLengths();
}

void Loader::clearBuffers() {
  clearBuffer(0, state_.CodeBuffer);
  clearBuffer(0, state_.EepromBuffer);
}

void Loader::showLengths() {
  const auto text = [](const std::string& words, const ImageBuffer& buffer) {
    return buffer.loaded ? words + " " + std::to_string(buffer.fileEnd + 1) : words;
  };
  panel_.Label7[1].setCaption(text("AP File effective length: ", state_.CodeBuffer));
  panel_.Label7[2].setCaption(text("Data File effective length: ", state_.EepromBuffer));
}

}  // namespace kvr::images
