#include "platform/qt/interrupt.h"

#include <signal.h>
#include <unistd.h>

namespace kvr::platform {

void interruptProcess(std::int64_t id) {
  if (id > 0) ::kill(static_cast<pid_t>(id), SIGINT);  // 0 would be everybody
}

void keepFromTerminal(QProcess& process) {
  process.setChildProcessModifier([] {
    if (::setpgid(0, 0) != 0) return;  // it runs all the same
  });
}

}  // namespace kvr::platform
