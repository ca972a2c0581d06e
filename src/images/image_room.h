// The images' room put together: buffers, files, views, serial numbers, store, compare, reload.
#pragma once

#include "images/compare_file_room.h"
#include "images/facts_view.h"
#include "images/file_watcher_room.h"
#include "images/opener_room.h"
#include "images/store_compare_room.h"

namespace kvr::images {

class ImageRoom {
 public:
  // `textMsg`: the message pane, which compare writes.
  ImageRoom(platform::World& world, const catalogue::SelectedModel& selected, platform::Activity& activity,
            platform::UiLock& lock, platform::TextBox& textMsg);

  ImagePanel panel;
  ImageState state;
  ImageSlots slots;
  FactsView facts;
  BufferViews views;
  SerialCounters counters;
  Loader loader;
  Opener opener;
  CompareFile compareFile;
  Reloader reloader;
  FileWatcher watcher;
  StoreCompare storeCompare;

  // What follows from the model, such as the two labels of the range that the application may use; after one was
  // applied.
  void showModel();
  // The data file's controls are offered or not (what the model takes and the lock allow).
  void setDataFileControls(bool enable);

 private:
  void applyLock();
  const catalogue::SelectedModel& selected_;
  const platform::UiLock& lock_;
  bool codeOffered_ = true;
};

}  // namespace kvr::images
