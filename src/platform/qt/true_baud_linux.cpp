// Asks the driver for a rate as a number; its header clashes with the system's usual one, so it is alone here.
#include <asm/termbits.h>
#include <sys/ioctl.h>

#include "platform/qt/serial_device.h"

namespace kvr::platform {

int trueBaudOf(std::intptr_t handle) {
  termios2 state{};
  return ::ioctl(static_cast<int>(handle), TCGETS2, &state) == 0 ? static_cast<int>(state.c_ospeed) : 0;
}

}  // namespace kvr::platform
