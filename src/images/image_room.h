// The images' room put together: buffers, loaders, views, serial numbers, store, compare, reload.
#pragma once

#include "catalogue/selected_model.h"
#include "images/buffer_views.h"
#include "images/file_watcher.h"
#include "images/image_buffer.h"
#include "images/image_panel.h"
#include "images/loader.h"
#include "images/serial_counters.h"
#include "images/store_compare.h"
#include "platform/world.h"

namespace kvr::images {

class ImageRoom {
 public:
  // `textMsg`: the message pane, which compare writes.
  ImageRoom(platform::World& world, const catalogue::SelectedModel& selected, platform::TextBox& textMsg);

  ImagePanel panel;
  ImageState state;
  BufferViews views;
  SerialCounters counters;
  Loader loader;
  StoreCompare storeCompare;
  FileWatcher watcher;

  // The two labels of the range that the application may use; after a model was applied.
  void showModel();
  // The data file's controls are offered or not (what the model takes and the lock allow).
  void setDataFileControls(bool enable);
  // Files are opened, stored and reloaded only while nothing else is under way.
  void setAlone(const Alone& alone) {
    loader.alone = storeCompare.alone = watcher.alone = views.alone = counters.alone = alone;
  }
  // The lock of the window: 0 free, 1 busy, 2 options locked, 3 both.
  void applyLock(int uiLockState);

 private:
  const catalogue::SelectedModel& selected_;
  bool codeOffered_ = true;
  bool dataOffered_ = false;
};

}  // namespace kvr::images
