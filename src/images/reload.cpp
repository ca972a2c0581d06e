// The same file again: at the start of a run, or because another program rewrote it.
#include "images/loader.h"

namespace kvr::images {

using platform::Millis;

namespace {
constexpr Millis kSettleStep{250};    // a file that is being written changes within this time
constexpr Millis kSettleLimit{5000};  // a file that does not come to rest is not waited for longer
}  // namespace

// Another window on the same settings may have opened another file: it must not come into this window's chips.
std::string Loader::reloadPath() const {
  return reloadPath_ ? *reloadPath_ : world_.store.getOr("Settings", "FilePath", "");
}

bool Loader::reloadFiles() {
  const std::string path = reloadPath();
  if (!world_.files.fileExists(path)) {
    world_.dialogs.message("KVR-ISP", "Can not find the file.", platform::BoxIcon::Warning);
    return false;
  }
  state_.lastFileName = path;
  panel_.Frame7.setCaption("Program File: " + path);
  return true;
}

bool Loader::reload() {
  const std::string path = reloadPath();
  if (isProjectPath(path) || (reloadPath_ && path.empty())) return true;
  if (world_.files.fileExists(path) && !waitUntilWhole(path)) {
    world_.dialogs.message("KVR-ISP", "The file is still being written: " + path, platform::BoxIcon::Warning);
    return false;
  }
  return reloadNow();
}

bool Loader::reloadNow() {
  if (!reloadFiles()) return false;
  const std::string path = state_.lastFileName;
  const bool codeOn = panel_.cheAuto_Increase.value();
  const bool dataOn = panel_.cheData_Auto_Increase.value();
  if (const LoadResult result = loadImage(path, state_.CodeBuffer); result != LoadResult::Loaded) {
    // What stands in the buffer now is not the file, and zeros must not reach a chip.
    if (result == LoadResult::Unreadable) state_.imageValid = false;
    return false;
  }
  panel_.cheAuto_Increase.setValue(codeOn);
  panel_.cheData_Auto_Increase.setValue(dataOn);
  if (codeOn) counters_.cheAuto_Increase_Click();
  if (dataOn) counters_.cheData_Auto_Increase_Click();
  return true;
}

bool Loader::looksWhole(const std::string& path) const {
  const auto bytes = world_.files.read(path, kReadLimit);
  if (!bytes || bytes->empty()) return false;  // cut to nothing before it is written anew
  const bool known = codeFile_.path == path;
  // What was HEX stays HEX: the beginnings of one, or the zeros of space set aside for it, can look like a binary.
  const bool needsEnd = known ? codeFile_.endRecord : chooseFormat(path, *bytes).format == FileFormat::Hex;
  return !needsEnd || scanHex(*bytes, 0, 0, 0).endRecord;
}

// A compiler that rewrites the file in place, or in pieces, is given time to end.
bool Loader::waitUntilWhole(const std::string& path) {
  auto stamp = world_.files.stamp(path);
  if (stamp && codeFile_.path == path && *stamp == codeFile_.stamp) return true;
  for (Millis waited{0}; waited < kSettleLimit; waited += kSettleStep) {
    platform::delay(world_.loop, kSettleStep);
    const auto now = world_.files.stamp(path);
    if (now && now == stamp && looksWhole(path)) return true;
    stamp = now;
  }
  return false;
}

}  // namespace kvr::images
