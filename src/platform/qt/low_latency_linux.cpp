// The only file that knows of Linux's own serial flags.
#include "platform/qt/serial_device.h"

#ifdef __linux__
#include <linux/serial.h>
#include <sys/ioctl.h>
#endif

namespace kvr::platform {

void requestLowLatency([[maybe_unused]] std::intptr_t handle) {
#ifdef __linux__
  constexpr int kQuick = ASYNC_LOW_LATENCY;
  serial_struct state{};
  const int descriptor = static_cast<int>(handle);
  if (::ioctl(descriptor, TIOCGSERIAL, &state) != 0 || (state.flags & kQuick) != 0) return;
  state.flags |= kQuick;
  ::ioctl(descriptor, TIOCSSERIAL, &state);  // a driver without the mode, or a user without the right, keeps its own
#endif
}

}  // namespace kvr::platform
