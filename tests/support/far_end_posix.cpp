#include "tests/support/far_end.h"

#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <stdexcept>

namespace kvr::support {

FarEnd::FarEnd() : master_(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
  if (master_ < 0 || ::grantpt(master_) != 0 || ::unlockpt(master_) != 0)
    throw std::runtime_error("no pseudo-terminal");
  device_ = ::ptsname(master_);
  termios raw{};
  ::tcgetattr(master_, &raw);
  ::cfmakeraw(&raw);
  ::tcsetattr(master_, TCSANOW, &raw);
}

void FarEnd::send(const std::vector<std::uint8_t>& bytes) {
  if (::write(master_, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size()))
    throw std::runtime_error("the pseudo-terminal takes no bytes");
}

std::vector<std::uint8_t> FarEnd::receive(std::size_t count) {
  std::vector<std::uint8_t> bytes;
  while (bytes.size() < count) {
    pollfd state{master_, POLLIN, 0};
    std::uint8_t buffer[4096];
    if (::poll(&state, 1, 2000) <= 0) break;
    const auto got = ::read(master_, buffer, std::min(sizeof buffer, count - bytes.size()));
    if (got <= 0) break;
    bytes.insert(bytes.end(), buffer, buffer + got);
  }
  return bytes;
}

void FarEnd::hangUp() {
  if (master_ >= 0) ::close(master_);
  master_ = -1;
}

}  // namespace kvr::support
