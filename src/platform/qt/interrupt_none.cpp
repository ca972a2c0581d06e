#include "platform/qt/interrupt.h"

namespace kvr::platform {

void interruptProcess(std::int64_t) {}

void keepFromTerminal(QProcess&) {}

}  // namespace kvr::platform
