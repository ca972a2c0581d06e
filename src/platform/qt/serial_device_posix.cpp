#include "platform/qt/serial_device.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <string_view>

namespace kvr::platform {
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
      return {Kind::Other, device + ": cannot be opened"};
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

void DeviceGuard::prepare(ModemLines lines) {
  if (handle_ < 0) return;
  const int low = (lines.dtr ? 0 : TIOCM_DTR) | (lines.rts ? 0 : TIOCM_RTS);
  if (low != 0) ::ioctl(handle_, TIOCMBIC, &low);
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

std::vector<std::uint8_t> waitingBytes(std::intptr_t handle, std::size_t most) {
  std::vector<std::uint8_t> bytes(most);
  std::size_t taken = 0;
  while (taken < most) {
    const ssize_t got = ::read(static_cast<int>(handle), bytes.data() + taken, most - taken);
    if (got <= 0) break;
    taken += static_cast<std::size_t>(got);
  }
  bytes.resize(taken);
  return bytes;
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

// Only a pseudo-terminal has a name below this folder.
bool isPseudoTerminal(std::intptr_t handle) {
  std::array<char, 256> name{};
  return ::ttyname_r(static_cast<int>(handle), name.data(), name.size()) == 0 &&
         std::string_view(name.data()).starts_with("/dev/pts/");
}

std::optional<LineBits> lineBitsOf(std::intptr_t handle) {
  termios state{};
  if (::tcgetattr(static_cast<int>(handle), &state) != 0) return std::nullopt;
  const tcflag_t size = state.c_cflag & CSIZE;
  const int bits = size == CS5 ? 5 : size == CS6 ? 6 : size == CS7 ? 7 : 8;
  return LineBits{(state.c_cflag & PARENB) != 0, (state.c_cflag & PARODD) != 0, bits, (state.c_cflag & CSTOPB) != 0};
}

std::optional<FlowControl> flowControlOf(std::intptr_t handle) {
  termios state{};
  if (::tcgetattr(static_cast<int>(handle), &state) != 0) return std::nullopt;
  if ((state.c_cflag & CRTSCTS) != 0) return FlowControl::RtsCts;
  return (state.c_iflag & (IXON | IXOFF)) != 0 ? FlowControl::XonXoff : FlowControl::None;
}

std::optional<InputLines> inputLinesOf(std::intptr_t handle) {
  int lines = 0;
  if (::ioctl(static_cast<int>(handle), TIOCMGET, &lines) != 0) return std::nullopt;
  const auto up = [lines](int line) { return (lines & line) != 0; };
  return InputLines{up(TIOCM_CTS), up(TIOCM_DSR), up(TIOCM_CAR), up(TIOCM_RNG)};
}

}  // namespace kvr::platform
