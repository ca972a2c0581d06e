#include "images/reload_room.h"

namespace kvr::images {

using platform::Millis;

namespace {
constexpr Millis kSettleStep{250};    // a file that is being written changes within this time
constexpr Millis kSettleLimit{5000};  // a file that does not come to rest is not waited for longer
}  // namespace

Reloader::Reloader(platform::World& world, ImageSlots& slots, Loader& loader, SerialCounters& counters)
    : world_(world), slots_(slots), loader_(loader), counters_(counters) {}

ReloadResult Reloader::reload(const std::function<bool()>& stopAsked) {
  const CodeSource source = loader_.source();
  if (source.kind == CodeSource::Kind::Project) return ReloadResult::Ready;
  if (source.kind == CodeSource::Kind::Nothing || !world_.files.fileExists(source.path))
    return refuse("Can not find the file.");
  auto content = readContent(world_.files, source.path);
  bool ready = content && content->atRest && content->stamp == source.stamp;  // as it was taken before
  for (Millis waited{0}; !ready && waited < kSettleLimit; waited += kSettleStep) {
    const auto before = world_.files.stamp(source.path);
    platform::delay(world_.loop, kSettleStep);
    if (stopAsked && stopAsked()) return ReloadResult::Stopped;
    if (!before || world_.files.stamp(source.path) != before) continue;
    content = readContent(world_.files, source.path);
    ready = content && content->stamp == *before && isWhole(*content, source);
  }
  if (!content) return refuse(faultText(FileFault::Unreadable, source.path));
  if (!ready) return refuse("The file is still being written, or its end is missing: " + source.path);
  return take(*content) ? ReloadResult::Ready : ReloadResult::Failed;
}

ReloadResult Reloader::refuse(const std::string& text) {
  world_.dialogs.message(platform::kTitle, text, platform::BoxIcon::Warning);
  return ReloadResult::Failed;
}

std::optional<FileContent> Reloader::wholeFile() const {
  auto content = readContent(world_.files, loader_.source().path);
  if (!content || !isWhole(*content, loader_.source())) return std::nullopt;
  return content;
}

bool Reloader::take(const FileContent& content) {
  const std::array wasOn{slots_.code.counterBox.value(), slots_.data.counterBox.value()};
  const std::string path = loader_.source().path;
  if (loader_.take(path, content, ImageKind::Code) != LoadResult::Loaded) return false;
  for (ImageSlot* slot : slots_.both()) {
    slot->counterBox.setValue(wasOn[slot->kind == ImageKind::Code ? 0 : 1]);
    if (slot->counterBox.value()) counters_.followBox(slot->kind);
  }
  return true;
}

}  // namespace kvr::images
