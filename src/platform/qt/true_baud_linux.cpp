// Asks the driver for a rate as a number; its header clashes with the system's usual one, so it is alone here.
#include "platform/qt/serial_device.h"

#ifdef __linux__
#include <asm/termbits.h>
#include <sys/ioctl.h>
#endif

namespace kvr::platform {

int trueBaudOf([[maybe_unused]] std::intptr_t handle) {
#ifdef __linux__
  termios2 state{};
  if (::ioctl(static_cast<int>(handle), TCGETS2, &state) == 0) return static_cast<int>(state.c_ospeed);
#endif
  return 0;
}

}  // namespace kvr::platform
