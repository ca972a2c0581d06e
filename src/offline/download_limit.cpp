#include "offline/download_limit.h"

#include <algorithm>

#include "platform/text.h"

namespace kvr::offline {

DownloadLimit readDownloadLimit(std::string_view text) {
  constexpr std::int64_t kMost = 1000000;
  DownloadLimit limit;
  limit.chips = platform::roundEven(std::clamp(platform::valueOf(text), -1.0, 2.0 * kMost));
  if (limit.chips < 1) {
    limit.refusal = "The number of MCU is too small.";
  } else if (limit.chips > kMost) {
    limit.refusal = "The number of MCU should be less than or equal to 1000000 on an off-line progam board.";
  }
  return limit;
}

}  // namespace kvr::offline
