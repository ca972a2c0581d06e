#include "cli/qt/process_input.h"

namespace kvr::cli {

// The end of standard input cannot be awaited here.
void ProcessInput::watchEnd(std::function<void()> handler) {
  handler_ = std::move(handler);
}

void ProcessInput::read() {}

}  // namespace kvr::cli
