#include "platform/qt/growing_file.h"

#include <fcntl.h>

#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

#include "platform/qt/file_handle_posix.h"

namespace kvr::platform {
namespace {

using Clock = std::chrono::steady_clock;
constexpr std::chrono::seconds kSyncEvery{1};
constexpr std::chrono::seconds kLastWait{2};

// What both threads have; the one that goes last takes it along.
struct Shared {
  std::mutex mutex;
  std::condition_variable changed;
  Bytes queue;
  bool closing = false;
  bool ended = false;
  FileResult result;
  FileHandle file;  // the helper's alone
};

// Takes all that waits; false: nothing more will come.
bool take(Shared& shared, Bytes& batch) {
  batch.clear();
  std::unique_lock lock(shared.mutex);
  shared.changed.wait(lock, [&] { return shared.closing || !shared.queue.empty(); });
  std::swap(batch, shared.queue);
  return !batch.empty();
}

// Bytes wait that came during the last write; a look at the disk would only add to them.
bool behind(Shared& shared) {
  const std::scoped_lock lock(shared.mutex);
  return !shared.queue.empty();
}

void fail(Shared& shared, int error) {
  const std::scoped_lock lock(shared.mutex);
  shared.result = failureOf(error);
}

void writeAll(Shared& shared) {
  Bytes batch;
  auto synced = Clock::now();
  int error = 0;
  while (error == 0 && take(shared, batch)) {
    error = shared.file.write(batch);
    if (error != 0 || Clock::now() - synced < kSyncEvery || behind(shared)) continue;
    error = shared.file.bringToDisk();
    synced = Clock::now();
  }
  if (error == 0) error = shared.file.bringToDisk();
  if (error != 0) fail(shared, error);
  const std::scoped_lock lock(shared.mutex);
  shared.ended = true;
  shared.changed.notify_all();
}

class WrittenByHelper : public GrowingFile {
 public:
  explicit WrittenByHelper(std::shared_ptr<Shared> shared) : shared_(std::move(shared)) {}
  ~WrittenByHelper() override {
    finish();
    std::unique_lock lock(shared_->mutex);
    shared_->changed.wait_for(lock, kLastWait, [this] { return shared_->ended; });
  }
  WrittenByHelper(const WrittenByHelper&) = delete;
  WrittenByHelper& operator=(const WrittenByHelper&) = delete;

  FileResult write(std::span<const std::uint8_t> bytes) override {
    const std::scoped_lock lock(shared_->mutex);
    if (shared_->result && shared_->queue.size() + bytes.size() > kBacklog)
      shared_->result = {false, "the disk is too slow"};
    if (!shared_->result) return shared_->result;
    shared_->queue.insert(shared_->queue.end(), bytes.begin(), bytes.end());
    shared_->changed.notify_all();
    return {};
  }

  void finish() override {
    const std::scoped_lock lock(shared_->mutex);
    shared_->closing = true;
    shared_->changed.notify_all();
  }

 private:
  std::shared_ptr<Shared> shared_;
};

}  // namespace

std::unique_ptr<GrowingFile> growFile(const std::string& path, FileResult& why) {
  const PathKind kind = kindOf(path);
  const auto shared = std::make_shared<Shared>();
  const int error = kind == PathKind::Folder  ? EISDIR
                    : kind == PathKind::Other ? ENXIO
                                              : shared->file.openLocked(path, O_WRONLY | O_APPEND);
  why = error == 0 ? FileResult() : failureOf(error);
  if (!why) return nullptr;
  try {
    std::thread([shared] { writeAll(*shared); }).detach();
  } catch (const std::system_error&) {
    why = {false, "no more threads"};
    return nullptr;
  }
  return std::make_unique<WrittenByHelper>(shared);
}

}  // namespace kvr::platform
