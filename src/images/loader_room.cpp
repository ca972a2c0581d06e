#include "images/loader_room.h"

#include "platform/text.h"

namespace kvr::images {

Loader::Loader(platform::World& world, const catalogue::SelectedModel& selected, ImageSlots& slots, ImageState& state,
               BufferViews& views, SerialCounters& counters)
    : world_(world), selected_(selected), slots_(slots), state_(state), views_(views), counters_(counters) {}

LoadResult Loader::load(const std::string& path, ImageKind kind) {
  world_.dialogs.setBusy(true);
  const auto content = readContent(world_.files, path);
  world_.dialogs.setBusy(false);
  return content ? take(path, *content, kind) : refuse(FileFault::Unreadable, path);
}

std::optional<ImageFile> Loader::read(const std::string& path, ImageSlot& slot) {
  world_.dialogs.setBusy(true);
  const auto content = readContent(world_.files, path);
  world_.dialogs.setBusy(false);
  if (content) return scan(path, *content, slot);
  refuse(FileFault::Unreadable, path);
  return std::nullopt;
}

// Nothing: the file cannot be taken, and the user has been told.
std::optional<ImageFile> Loader::scan(const std::string& path, const FileContent& content, ImageSlot& slot) {
  const auto start = startOf(slot);
  if (!start) return std::nullopt;
  world_.dialogs.setBusy(true);
  ImageFile file = scanImageFile(path, content,
                                 {.kind = slot.kind,
                                  .start = static_cast<std::int32_t>(*start),
                                  .limit = selected_.record.bootEnd + 1,
                                  .size = slot.buffer.size()});
  world_.dialogs.setBusy(false);
  if (file.fault == FileFault::None) return file;
  refuse(file.fault, path);
  return std::nullopt;
}

LoadResult Loader::take(const std::string& path, const FileContent& content, ImageKind kind) {
  ImageSlot& slot = slots_.of(kind);
  const auto scanned = scan(path, content, slot);
  if (!scanned) return LoadResult::Refused;
  const ImageFile& file = *scanned;
  if (!acceptBadSums(path, file.hex)) {
    switchCountersOff();
    clear(slot);
    state_.imageValid = false;
    return LoadResult::Stopped;
  }
  counters_.forgetArmed();
  showTaken(path, content, file, slot);
  lay(file, slot);
  switchCountersOff();
  if (file.choice.showEnd) views_.showEnd(slot);
  views_.showRange(slot);
  showLengths();
  if (kind == ImageKind::Data) tellIfNotProgrammed();
  return LoadResult::Loaded;
}

LoadResult Loader::refuse(FileFault fault, const std::string& path) {
  world_.dialogs.message(platform::kTitle, faultText(fault, path), platform::BoxIcon::Warning);
  return LoadResult::Refused;
}

// Nothing: the start address lies outside the model's memory; the user has been told.
std::optional<std::int64_t> Loader::startOf(ImageSlot& slot) {
  const auto start = startAddress(slot.start.text());
  const std::string fault = checkStart(selected_.record, slot.kind, start.value_or(INT64_MAX));
  if (fault.empty()) return start;
  world_.dialogs.message(platform::kTitle, fault, platform::BoxIcon::Warning);
  return std::nullopt;
}

// False: the user wants none of the file.
bool Loader::acceptBadSums(const std::string& path, const HexScan& scan) {
  for (const std::string& line : scan.badLines)
    world_.dialogs.message(path, "The checksum is incorrect:\n\n" + line, platform::BoxIcon::Warning);
  if (scan.badSums < 3) return true;
  return world_.dialogs.askYesNo(path,
                                 "Not test Checksum any more. Continue loading the file, Please input Y.\n\n"
                                 "Stop loading the file. Return immediately, please input N");
}

void Loader::lay(const ImageFile& file, ImageSlot& slot) {
  const bool merge = state_.imageValid && !slot.clearFirst.value();
  if (!merge) state_.imageValid = slot.buffer.loaded = false;
  const RangeVerdict verdict = layFile(slot.buffer, file, merge, selected_);
  slots_.of(verdict.sumBox).checkSum.setText(verdict.sumText);
  for (const std::string& text : verdict.messages)
    world_.dialogs.message(loadTitle(file.file.format), text, platform::BoxIcon::Warning);
  state_.imageValid = slot.buffer.loaded = true;
}

void Loader::showTaken(const std::string& path, const FileContent& content, const ImageFile& file, ImageSlot& slot) {
  slot.frame.setCaption(slot.frameCaption + path);
  slot.info.setCaption(infoText(file.info));
  if (slot.kind != ImageKind::Code) return;
  source_ = {.kind = CodeSource::Kind::File,
             .path = path,
             .stamp = content.stamp,
             .format = file.choice.format,
             .info = file.info};
}

// A new file is not patched until the user switches the counter on again.
void Loader::switchCountersOff() {
  for (ImageSlot* slot : slots_.both()) {
    slot->counterBox.setValue(false);
    counters_.followBox(slot->kind);
  }
}

void Loader::clear(ImageSlot& slot) {
  if (slot.kind == ImageKind::Code) {
    state_.imageValid = false;
    source_ = {};
  }
  slot.buffer.bounds() = {};
  slot.buffer.sum = 0;
  slot.buffer.loaded = false;
  slot.buffer.fill(0);
  views_.showCleared(slot);
  slot.frame.setCaption(slot.frameCaption);
  slot.checkSum.clear();
  slot.info.setCaption("");
  showLengths();
}

void Loader::clearBuffers() {
  clear(slots_.code);
  clear(slots_.data);
}

void Loader::showLengths() {
  for (ImageSlot* slot : slots_.both()) {
    const std::string text = slot->lengthCaption;
    slot->length.setCaption(slot->buffer.loaded ? text + " " + std::to_string(slot->buffer.fileEnd + 1) : text);
  }
}

void Loader::tellIfNotProgrammed() {
  if (catalogue::hasDataFile(selected_.record) && !catalogue::dataFileIsProgrammed(selected_.record))
    world_.dialogs.message(platform::kTitle, std::string(catalogue::kDataFileNotProgrammed),
                           platform::BoxIcon::Warning);
}

}  // namespace kvr::images
