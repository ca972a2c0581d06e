#include "cli/qt/process_streams.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>

namespace kvr::cli {
namespace {

// False: nobody takes the bytes.
bool put(int handle, std::string_view text) {
  while (!text.empty()) {
    const ssize_t count = ::write(handle, text.data(), text.size());
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return false;
    text.remove_prefix(static_cast<std::size_t>(count));
  }
  return true;
}

}  // namespace

void ProcessStreams::out(std::string_view text) {
  if (outGone_ || put(STDOUT_FILENO, text)) return;
  outGone_ = true;
  if (onOutGone) onOutGone();
}

// Messages that cannot be told are lost: there is nowhere left to tell of that.
void ProcessStreams::err(std::string_view text) {
  if (!put(STDERR_FILENO, text)) return;
}

bool ProcessStreams::errIsTerminal() const {
  return isatty(STDERR_FILENO) != 0;
}

int ProcessStreams::errWidth() const {
  winsize size{};
  return ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : 80;
}

}  // namespace kvr::cli
