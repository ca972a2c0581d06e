// What a chip is left between its last byte and the next frame, before it must listen again.
#pragma once

#include "platform/event_loop.h"

namespace kvr::engine {

inline constexpr platform::Millis kShortTurnRound{1};  // does for most
inline constexpr platform::Millis kFullTurnRound{10};  // does for all

}  // namespace kvr::engine
