#include <linux/serial.h>
#include <sys/ioctl.h>

#include "platform/qt/serial_device.h"

namespace kvr::platform {

void requestLowLatency(std::intptr_t handle) {
  constexpr int kQuick = ASYNC_LOW_LATENCY;
  serial_struct state{};
  const int descriptor = static_cast<int>(handle);
  if (::ioctl(descriptor, TIOCGSERIAL, &state) != 0 || (state.flags & kQuick) != 0) return;
  state.flags |= kQuick;
  ::ioctl(descriptor, TIOCSSERIAL, &state);  // a driver without the mode, or a user without the right, keeps its own
}

}  // namespace kvr::platform
