// The user's command that makes a running program jump into the boot firmware; a download follows it.
#pragma once

#include "userpath/demo_run.h"

namespace kvr::userpath {

// Leaves the port open after a success.
[[nodiscard]] engine::Outcome sendTrigger(const engine::Job& job, const UserCommand& command,
                                          const engine::RunServices& services, engine::RunView& view);

}  // namespace kvr::userpath
