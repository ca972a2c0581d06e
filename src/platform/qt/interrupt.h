#pragma once

#include <QProcess>
#include <cstdint>

namespace kvr::platform {

// Asks a process of the user to end, as Ctrl-C does; one that is gone already is no fault.
void interruptProcess(std::int64_t id);
// Of a process that is not started yet: Ctrl-C in this program's terminal does not reach it, so that it gets no signal
// but those that this program sends.
void keepFromTerminal(QProcess& process);

}  // namespace kvr::platform
