#include "platform/qt/interrupt.h"

#include <signal.h>

namespace kvr::platform {

void interruptProcess(std::int64_t id) {
  if (id > 0) ::kill(static_cast<pid_t>(id), SIGINT);  // 0 would be everybody
}

}  // namespace kvr::platform
