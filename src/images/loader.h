// Opening files into the images: the two file buttons, the dialog, the load with its questions and messages.
#pragma once

#include <functional>
#include <string>

#include "catalogue/selected_model.h"
#include "images/buffer_views.h"
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
  Loader(platform::World& world, const catalogue::SelectedModel& selected, ImagePanel& panel, ImageState& state,
         BufferViews& views, SerialCounters& counters);

  void comLoadFile_Click();
  void comLoadDataFile_Click();
  // A file that was dropped onto the window or named otherwise: a project goes to `openProject`, else it is loaded and the
  // settings and captions follow as after the dialog.
  LoadResult open(const std::string& path, ImageBuffer& buffer);

  std::string askFileName(const std::string& kind);  // "AP" or "DATA"; empty: cancelled
  LoadResult loadImage(const std::string& path, ImageBuffer& buffer);
  void clearBuffer(std::uint8_t fill, ImageBuffer& buffer);
  void clearBuffers();  // both, with 0
  void showLengths();

  // The last path again. False: it is gone (message shown).
  bool reloadFiles();
  // The same file anew, for a run or because it changed: waits while the file is being written, and counters that were on are
  // on again afterwards with their value in the fresh image. False: no image stands; a run must end before anything is sent.
  [[nodiscard]] bool reload();

  std::function<void(const std::string&)> openProject;  // a path with ".KVR"; the project page is brought up by the receiver
  std::function<void()> onLoaded;                        // a load ended with an image (buttons may follow)

  // Stamp of the file as it was when it was last read into the code image.
  const std::string& loadedStamp() const { return loadedStamp_; }
  bool loadedHadEndRecord() const { return loadedHadEndRecord_; }

 private:
  platform::World& world_;
  const catalogue::SelectedModel& selected_;
  ImagePanel& panel_;
  ImageState& state_;
  BufferViews& views_;
  SerialCounters& counters_;
  std::string loadedStamp_;
  bool loadedHadEndRecord_ = false;
};

}  // namespace kvr::images
