#include "images/compare_file_room.h"

namespace kvr::images {

CompareFile::CompareFile(platform::World& world, platform::Activity& activity, const catalogue::SelectedModel& selected,
                         ImageSlots& slots, Loader& loader)
    : world_(world), activity_(activity), selected_(selected), loader_(loader) {
  for (ImageSlot* slot : slots.both()) slot->pane.onCompare = [this, slot] { askAndCompare(*slot); };
}

void CompareFile::askAndCompare(ImageSlot& slot) {
  const auto running = activity_.begin();
  if (!running) return;
  if (!slot.buffer.loaded) return world_.dialogs.message(platform::kTitle, " Please open code file.");
  const std::string last = world_.store.getOr("Settings", slot.pathKey, world_.files.programFolder());
  const std::string path = world_.dialogs.openFile({.title = "Compare with ( *.hex or *.bin )",
                                                    .filter = "(*.hex, *.bin)|*.hex;*.bin|All Files (*.*)|*.*",
                                                    .initialFolder = last,
                                                    .fileName = ""});
  if (!path.empty()) compare(slot, path);
}

// Laid as the image's own file is: what the model has no place for is missing on both sides.
void CompareFile::compare(ImageSlot& slot, const std::string& path) {
  const auto file = loader_.read(path, slot);
  if (!file) return;
  ImageBuffer other(slot.kind, slot.buffer.size());
  const RangeVerdict verdict = layFile(other, *file, false, selected_);
  for (const std::string& text : verdict.messages)
    world_.dialogs.message(loadTitle(file->file.format), text, platform::BoxIcon::Warning);
  slot.pane.model.compareWith(std::string(fileNameOf(path)), other.held());
  slot.pane.refresh();
}

}  // namespace kvr::images
