#include <QSocketNotifier>
#include <utility>

#include "cli/qt/signals.h"

namespace kvr::cli {

// Nothing is caught: the system ends the process as it ends any other.
Signals::Signals(std::function<void(Cut)> handler) : handler_(std::move(handler)) {}

Signals::~Signals() = default;

void Signals::take() {}

}  // namespace kvr::cli
