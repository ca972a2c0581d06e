// The process's own standard input.
#pragma once

#include <QSocketNotifier>
#include <memory>

#include "cli/input.h"
#include "platform/event_loop.h"

namespace kvr::cli {

class ProcessInput : public Input {
 public:
  explicit ProcessInput(platform::EventLoop& loop) : loop_(loop) {}
  void watchEnd(std::function<void()> handler) override;

 private:
  void read();
  platform::EventLoop& loop_;
  std::unique_ptr<QSocketNotifier> notifier_;
  std::function<void()> handler_;
};

}  // namespace kvr::cli
