// Names that a mistyped one may have meant.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kvr::platform {

// The names most like `text`, the likeliest first: those with the fewest letters to change, insert or take away, and
// those that contain it. Names that have next to nothing in common with it are left out; ASCII case does not count.
std::vector<std::string> nearestNames(std::string_view text, std::span<const std::string> names, std::size_t most = 3);

// "a, b or c"; empty for no name.
std::string joinedByOr(std::span<const std::string> names);

}  // namespace kvr::platform
