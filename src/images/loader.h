// Opening files into the images: the two file buttons, the dialog, the load with its questions and messages.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "catalogue/selected_model.h"
#include "images/alone.h"
#include "images/buffer_views.h"
#include "images/file_scan.h"
#include "images/image_panel.h"
#include "images/serial_counters.h"
#include "platform/world.h"

namespace kvr::images {

enum class LoadResult {
  Loaded,      // the image holds the file
  Refused,     // no path, or the start address lies outside the model's memory: nothing changed
  Stopped,     // the answer was No: the buffer is empty
  Unreadable,  // the file could not be read: the image holds nothing of it
};

class Loader {
 public:
  // Files are read whole up to this size; what lies behind it is not looked at.
  static constexpr std::size_t kReadLimit = std::size_t{128} << 20;

  Loader(platform::World& world, const catalogue::SelectedModel& selected, ImagePanel& panel, ImageState& state,
         BufferViews& views, SerialCounters& counters);

  void comLoadFile_Click();
  void comLoadDataFile_Click();
  // A file that was dropped onto the window or named otherwise: captions and settings follow as after the dialog, then
  // a project goes to `openProject` and anything else is loaded. Refused, too, while something else is under way.
  LoadResult open(const std::string& path, ImageBuffer& buffer);

  std::string askFileName(const std::string& kind);  // "AP" or "DATA"; empty: cancelled
  LoadResult loadImage(const std::string& path, ImageBuffer& buffer);
  void clearBuffer(std::uint8_t fill, ImageBuffer& buffer);
  void clearBuffers();  // both, with 0
  void showLengths();

  // Takes the last path again, without loading. False: the file is gone (message shown).
  bool reloadFiles();
  // The same code file anew, for a run or because it changed: waits while the file is being written, and counters that
  // were on are on again afterwards with their value in the fresh image. False: a run must end before anything is sent.
  // An image that came from a project has no file to reload: it stands, and the answer is true.
  [[nodiscard]] bool reload();
  [[nodiscard]] bool reloadNow();  // the same for a file that is known to be at rest

  // The code file as it was last read: its path (empty: none yet), its stamp, and whether it ended with an end record.
  struct CodeFile {
    std::string path;
    std::string stamp;
    bool endRecord = false;
  };
  const CodeFile& codeFile() const { return codeFile_; }
  // The code image was filled by a project, not from the file that this window asked for last.
  void imageIsNoFiles() { reloadPath_ = ""; }
  // The file may be taken: it holds something, and a HEX file has the end record that its last version had.
  bool looksWhole(const std::string& path) const;

  Alone alone;                                          // the two buttons' dialogs and loads
  std::function<void(const std::string&)> openProject;  // a path with ".KVR"; the receiver brings up its page
  std::function<void()> onLoaded;                       // a load ended with an image

 private:
  struct Read;
  Read read(const std::string& path, const ImageBuffer& buffer) const;
  bool acceptBadSums(const std::string& path, const HexScan& scan);
  void judge(Read& read, ImageBuffer& buffer);
  void pick(const std::string& kind, ImageBuffer& buffer);
  void remember(const std::string& path, bool isCode);
  void noteCodePath(const std::string& path);
  std::string reloadPath() const;
  bool startAt(ImageBuffer& buffer);
  void prepare(ImageBuffer& buffer);
  LoadResult loadFileByType(const std::string& path, ImageBuffer& buffer, bool& showEnd);
  bool waitUntilWhole(const std::string& path);
  int viewOf(const ImageBuffer& buffer) const { return buffer.isCode() ? 0 : 1; }
  platform::World& world_;
  const catalogue::SelectedModel& selected_;
  ImagePanel& panel_;
  ImageState& state_;
  BufferViews& views_;
  SerialCounters& counters_;
  CodeFile codeFile_;
  std::optional<std::string> reloadPath_;  // as this window set it; not yet: the setting
};

// A path that names a project, by the ".KVR" in it.
bool isProjectPath(const std::string& path);

}  // namespace kvr::images
