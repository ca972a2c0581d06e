#include "platform/qt/bounded_calls.h"

#include <condition_variable>
#include <mutex>
#include <system_error>
#include <thread>

namespace kvr::platform {

struct BoundedCalls::Call {
  std::mutex mutex;
  std::condition_variable ended;
  bool done = false;
  Progress progress = 0;
};

bool BoundedCalls::run(const std::string& path, std::function<void(Progress&)> work) {
  if (const auto found = stuck_.find(path); found != stuck_.end()) {
    if (!found->second.expired()) return false;
    stuck_.erase(found);
  }
  const auto call = std::make_shared<Call>();
  try {
    std::thread([call, work] {
      work(call->progress);
      const std::scoped_lock lock(call->mutex);
      call->done = true;
      call->ended.notify_all();
    }).detach();
  } catch (const std::system_error&) {  // no more threads: then by this one
    work(call->progress);
    return true;
  }
  std::unique_lock lock(call->mutex);
  for (std::size_t seen = 0;; seen = call->progress) {
    if (call->ended.wait_for(lock, limit_, [&] { return call->done; })) return true;
    if (call->progress == seen) break;
  }
  stuck_[path] = call;
  return false;
}

}  // namespace kvr::platform
