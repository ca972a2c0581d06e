#include "platform/qt/serial_device.h"

namespace kvr::platform {

int trueBaudOf(std::intptr_t) {
  return 0;
}

}  // namespace kvr::platform
