// How many chips a board may program.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kvr::offline {

struct DownloadLimit {
  std::int64_t chips = 0;
  std::string refusal;  // the message for the user; empty: the limit is good
};

DownloadLimit readDownloadLimit(std::string_view text);

}  // namespace kvr::offline
