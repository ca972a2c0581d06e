// The signals that end the command, handed over in its own loop.
#pragma once

#include <functional>
#include <memory>

#include "cli/exit_code.h"

class QSocketNotifier;

namespace kvr::cli {

class Signals {
 public:
  // Ctrl-C, SIGTERM and SIGHUP call `handler`, once each time they come; a reader that goes away (SIGPIPE) only makes
  // writing fail. The second Ctrl-C or SIGTERM ends the process at once, with the number of the first.
  explicit Signals(std::function<void(Cut)> handler);
  ~Signals();
  Signals(const Signals&) = delete;
  Signals& operator=(const Signals&) = delete;

 private:
  void take();
  std::function<void(Cut)> handler_;
  std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace kvr::cli
