#include "images/file_watcher_room.h"

namespace kvr::images {

FileWatcher::FileWatcher(platform::World& world, platform::Activity& activity, ImagePanel& panel,
                         const ImageState& state, const Loader& loader, Reloader& reloader)
    : world_(world),
      activity_(activity),
      panel_(panel),
      state_(state),
      loader_(loader),
      reloader_(reloader),
      ticks_(
          world.loop, [this] { tick(); }, platform::Timer::Kind::Periodic) {
  ticks_.setInterval(platform::Millis{1000});
  const auto follow = [this] { listen(); };
  tokens_.push_back(panel_.cekReloadFileWhileFileChange.changed.watch(follow));
  tokens_.push_back(panel_.cekReloadFileWhileFileChange1.changed.watch(follow));
}

bool FileWatcher::wanted() const {
  return panel_.cekReloadFileWhileFileChange.value() || panel_.cekReloadFileWhileFileChange1.value();
}

// The timer runs only while a box is on: an idle window sleeps.
void FileWatcher::listen() {
  if (!wanted())
    ticks_.stop();
  else if (!ticks_.isActive()) {
    notePresent();
    ticks_.start();
  }
}

// A file that is watched for the first time counts as it is now: what became of it between its load and the tick of the
// box starts no download. One that was watched before keeps its stamp, so a build made while the boxes were off counts.
void FileWatcher::notePresent() {
  const CodeSource& file = loader_.source();
  if (!state_.imageValid || file.kind != CodeSource::Kind::File || file.path == seenPath_) return;
  const auto stamp = world_.files.stamp(file.path);
  if (!stamp) return;
  seenPath_ = file.path;
  seenStamp_ = *stamp;
}

// While a sequence runs or a dialog is open, the stamp stays as it was, so the change counts later.
void FileWatcher::tick() {
  if (activity_.busy() || !state_.imageValid || !wanted()) return;
  if (const auto content = newVersion()) start(*content);
}

std::optional<FileContent> FileWatcher::newVersion() {
  const CodeSource& file = loader_.source();
  if (file.kind != CodeSource::Kind::File) return std::nullopt;
  const auto stamp = world_.files.stamp(file.path);
  if (!stamp) return std::nullopt;  // gone, or between two names
  if (file.path != seenPath_) {
    // Loaded while the box was on: what the load saw is what a new build differs from.
    seenPath_ = file.path;
    seenStamp_ = file.stamp;
    return std::nullopt;
  }
  if (*stamp == file.stamp) seenStamp_ = *stamp;  // loaded meanwhile, by hand or at the start of a run
  if (*stamp == seenStamp_) return std::nullopt;
  if (*stamp != candidate_) {
    // Just changed: it may be half a file. It counts once it has been the same for a whole tick.
    candidate_ = *stamp;
    return std::nullopt;
  }
  auto content = reloader_.wholeFile();
  if (!content || content->stamp != *stamp) return std::nullopt;
  if (!isSameVersion(*content, file)) return content;
  seenStamp_ = *stamp;
  return std::nullopt;
}

void FileWatcher::start(const FileContent& content) {
  {
    const auto running = activity_.begin();
    if (!running) return;
    seenStamp_ = content.stamp;
    if (!reloader_.take(content)) return;
  }
  if (panel_.cekReloadFileWhileFileChange1.value()) {
    if (onTrigger) onTrigger();
  } else if (panel_.cekReloadFileWhileFileChange.value()) {
    if (onDownload) onDownload();
  }
}

}  // namespace kvr::images
