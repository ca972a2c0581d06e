#include "platform/qt/serial_device.h"

#include <QtGlobal>
#include <cerrno>
#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <cstring>
#endif

namespace kvr::platform {

#ifdef Q_OS_UNIX
namespace {

PortError openError(const std::string& device, int code) {
  using Kind = PortError::Kind;
  switch (code) {
    case ENOENT:
    case ENXIO:
    case ENODEV:
    case EIO:
      return {Kind::NoSuchDevice, device + ": no such device"};
    case EACCES:
    case EPERM:
      return {Kind::Denied, device + ": permission denied, join group dialout"};
    case EBUSY:
      return {Kind::Busy, device + ": busy"};
    default:
      return {Kind::Other, device + ": " + std::strerror(code)};
  }
}

}  // namespace

DeviceGuard::DeviceGuard(const std::string& device) {
  handle_ = ::open(device.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
  if (handle_ < 0)
    error_ = openError(device, errno);
  else if (::isatty(handle_) == 0)
    error_ = {PortError::Kind::NoSuchDevice, device + ": no serial device"};
}

DeviceGuard::~DeviceGuard() {
  if (handle_ >= 0) ::close(handle_);
}

void DeviceGuard::prepare() {
  if (handle_ < 0) return;
  termios state{};
  if (::tcgetattr(handle_, &state) == 0 && (state.c_cflag & HUPCL) != 0) {
    state.c_cflag &= ~static_cast<tcflag_t>(HUPCL);
    ::tcsetattr(handle_, TCSANOW, &state);
  }
  requestLowLatency(handle_);
}

std::size_t bytesInDriver(std::intptr_t handle) {
  int count = 0;
  return ::ioctl(static_cast<int>(handle), TIOCOUTQ, &count) == 0 && count > 0 ? static_cast<std::size_t>(count) : 0;
}

void drainDevice(std::intptr_t handle) {
  ::tcdrain(static_cast<int>(handle));
}

bool deviceGone(std::intptr_t handle) {
  pollfd state{static_cast<int>(handle), 0, 0};
  if (::poll(&state, 1, 0) > 0 && (state.revents & (POLLHUP | POLLERR | POLLNVAL)) != 0) return true;
  termios settings{};
  return ::tcgetattr(static_cast<int>(handle), &settings) != 0;
}
#else
DeviceGuard::DeviceGuard(const std::string&) {}
DeviceGuard::~DeviceGuard() = default;
void DeviceGuard::prepare() {}
std::size_t bytesInDriver(std::intptr_t) {
  return 0;
}
void drainDevice(std::intptr_t) {}
bool deviceGone(std::intptr_t) {
  return true;
}
#endif

}  // namespace kvr::platform
