#include "comtool/pane_area.h"

namespace kvr::comtool {

PaneArea::PaneArea(platform::World world, ToolPanel& panel, platform::UiLock& lock) : world_(world), panel_(panel) {
  panel_.comFindNext.onClick = [this] { find(false); };
  panel_.comFindPrevious.onClick = [this] { find(true); };
  panel_.comSaveReceive.onClick = [this] { save(); };
  lockToken_ = lock.changed.watch([this, &lock] { panel_.comSaveReceive.setEnabled(!lock.busy()); });
}

void PaneArea::find(bool backward) {
  const PaneText& text = panel_.texReceive.content();
  const auto selection = panel_.texReceive.selection();
  const std::string& needle = panel_.texFind.text();
  auto place = text.find(needle, backward ? selection.from : selection.to, backward);
  const bool wrapped = !place;
  if (wrapped) place = text.find(needle, backward ? text.end() : text.begin(), backward);
  if (!place) return panel_.labFind.setCaption(needle.empty() ? "" : "Not found");
  panel_.labFind.setCaption(!wrapped ? "" : backward ? "Went on from the end" : "Went on from the start");
  panel_.che_AutoScroll.setValue(false);
  panel_.texReceive.show(*place);
}

void PaneArea::save() {
  const std::string text = panel_.texReceive.text();
  const std::string path =
      world_.dialogs.saveFile({"Save the received text", "Text (*.txt)|*.txt|All Files (*.*)|*.*", "", "received.txt"});
  if (path.empty()) return;
  const auto result = world_.files.replace(path, {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
  if (!result)
    world_.dialogs.message(platform::kTitle, "The file cannot be written: " + result.error, platform::BoxIcon::Warning);
}

}  // namespace kvr::comtool
