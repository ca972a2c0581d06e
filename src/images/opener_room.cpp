#include "images/opener_room.h"

namespace kvr::images {

Opener::Opener(platform::World& world, platform::Activity& activity, ImageSlots& slots, Loader& loader)
    : world_(world),
      activity_(activity),
      slots_(slots),
      loader_(loader),
      recentCode_(world, "RecentCode"),
      recentData_(world, "RecentData") {
  for (ImageSlot* slot : slots_.both()) slot->openButton.onClick = [this, slot] { askAndOpen(slot->kind); };
}

void Opener::askAndOpen(ImageKind kind) {
  auto running = activity_.begin();
  if (!running) return;
  ImageSlot& slot = slots_.of(kind);
  const std::string path = askPath(slot);
  if (!path.empty())
    openNow(path, slot, std::move(running));
  else if (kind == ImageKind::Code)
    world_.store.set("Settings", slot.pathKey, world_.files.programFolder());  // where the next dialog begins
}

LoadResult Opener::open(const std::string& path, ImageKind kind) {
  auto running = activity_.begin();
  if (!running || path.empty()) return LoadResult::Refused;
  return openNow(path, slots_.of(kind), std::move(running));
}

LoadResult Opener::openNow(const std::string& path, ImageSlot& slot, platform::Activity::Running running) {
  const std::string full = world_.files.absolute(path);
  LoadResult result = LoadResult::Refused;
  if (isProjectPath(full)) {
    { const auto ended = std::move(running); }  // the project's room guards itself
    if (openProject && openProject(full)) result = LoadResult::Loaded;
  } else {
    result = loader_.load(full, slot.kind);
  }
  if (result == LoadResult::Loaded) keepPath(slot, full);
  return result;
}

std::string Opener::askPath(const ImageSlot& slot) {
  std::string last = world_.store.getOr("Settings", slot.pathKey, "");
  if (last.empty()) last = world_.files.programFolder();
  const std::string path =
      world_.dialogs.openFile({.title = slot.dialogTitle,
                               .filter = "(*.hex, *.bin)|*.hex;*.bin|(*.bin)|*.bin|(*.hex)|*.hex|All Files (*.*)|*.*",
                               .initialFolder = last,
                               .fileName = world_.files.fileExists(last) ? std::string(fileNameOf(last)) : ""});
  return path.ends_with('\\') || path.ends_with('/') ? std::string() : path;
}

void Opener::keepPath(ImageSlot& slot, const std::string& path) {
  world_.store.set("Settings", slot.pathKey, path);
  // A project has a list of its own.
  auto& recent = slot.kind == ImageKind::Code ? recentCode_ : recentData_;
  if (!isProjectPath(path)) recent.add(path);
  const auto saved = world_.store.flush();
  if (!saved) slot.info.setCaption(slot.info.caption() + "\nNote: the settings could not be saved: " + saved.error);
}

}  // namespace kvr::images
