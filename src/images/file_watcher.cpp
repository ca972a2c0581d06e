#include "images/file_watcher.h"

namespace kvr::images {

FileWatcher::FileWatcher(platform::World& world, ImagePanel& panel, ImageState& state, Loader& loader)
    : world_(world),
      panel_(panel),
      state_(state),
      loader_(loader),
      Timer12_(
          world.loop, [this] { Timer12_Timer(); }, platform::Timer::Kind::Periodic) {
  Timer12_.setInterval(platform::Millis{1000});
  const auto follow = [this] { listen(); };
  tokens_.push_back(panel_.cekReloadFileWhileFileChange.changed.watch(follow));
  tokens_.push_back(panel_.cekReloadFileWhileFileChange1.changed.watch(follow));
}

bool FileWatcher::wanted() const {
  return panel_.cekReloadFileWhileFileChange.value() || panel_.cekReloadFileWhileFileChange1.value();
}

// The tick runs only while a box is on: an idle window sleeps.
void FileWatcher::listen() {
  if (!wanted())
    Timer12_.stop();
  else if (!Timer12_.isActive()) {
    notePresent();
    Timer12_.start();
  }
}

// A file that was loaded before the box was switched on counts as it stands now: what became of it in the meantime
// starts no download. A build within the first second is seen.
void FileWatcher::notePresent() {
  const Loader::CodeFile& file = loader_.codeFile();
  if (!state_.imageValid || file.path.empty() || file.path == watchedFile_) return;
  const auto stamp = world_.files.stamp(file.path);
  if (!stamp) return;
  watchedFile_ = file.path;
  watchedStamp_ = *stamp;
}

void FileWatcher::Timer12_Timer() {
  if (inTick_ || (isBusy && isBusy())) return;  // the stamp stays as it was, so the change counts later
  if (!state_.imageValid || !wanted()) return;
  inTick_ = true;
  if (isChanged()) start();
  inTick_ = false;
}

// True: there is a whole new file.
bool FileWatcher::isChanged() {
  const Loader::CodeFile& file = loader_.codeFile();
  if (file.path.empty() || isProjectPath(file.path)) return false;
  const auto stamp = world_.files.stamp(file.path);
  if (!stamp) return false;  // gone, or between two names
  if (file.path != watchedFile_) {
    // Loaded under the watcher's eyes: what the load saw is what a new build differs from.
    watchedFile_ = file.path;
    watchedStamp_ = file.stamp;
    return false;
  }
  if (*stamp == file.stamp) watchedStamp_ = *stamp;  // loaded meanwhile, by hand or at the start of a run
  if (*stamp == watchedStamp_) return false;
  if (*stamp != candidate_) {
    // Just changed: it may be half a file. It counts once it has been the same for a whole tick.
    candidate_ = *stamp;
    return false;
  }
  return loader_.looksWhole(file.path);
}

void FileWatcher::start() {
  bool loaded = false;
  if (!runAlone(alone, [&] {
        watchedStamp_ = candidate_;
        loaded = loader_.reloadNow();
      }))
    return;
  if (!loaded) return;
  watchedStamp_ = loader_.codeFile().stamp;
  if (panel_.cekReloadFileWhileFileChange1.value()) {
    if (onTrigger) onTrigger();
  } else if (panel_.cekReloadFileWhileFileChange.value()) {
    if (onDownload) onDownload();
  }
}

}  // namespace kvr::images
