#include "platform/qt/serial_device.h"

namespace kvr::platform {

void requestLowLatency(std::intptr_t) {}

}  // namespace kvr::platform
