#include "cli/qt/process_input.h"

#include <unistd.h>

#include <array>
#include <cerrno>

namespace kvr::cli {

void ProcessInput::watchEnd(std::function<void()> handler) {
  handler_ = std::move(handler);
  notifier_ = std::make_unique<QSocketNotifier>(STDIN_FILENO, QSocketNotifier::Read);
  QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(), [this] { read(); });
}

void ProcessInput::read() {
  std::array<char, 4096> bytes{};
  const ssize_t count = ::read(STDIN_FILENO, bytes.data(), bytes.size());
  if (count > 0 || (count < 0 && (errno == EINTR || errno == EAGAIN))) return;
  notifier_->setEnabled(false);
  loop_.post(handler_);
}

}  // namespace kvr::cli
