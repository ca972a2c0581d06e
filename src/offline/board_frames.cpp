#include "offline/board_frames.h"

#include <algorithm>

#include "engine/frames.h"
#include "offline/byte_fields.h"

namespace kvr::offline {

std::vector<std::uint8_t> buildBoardWriteFrame(std::span<const std::uint8_t> data, int address, bool retried) {
  constexpr std::size_t kHead = 6;
  std::vector<std::uint8_t> payload(kHead + data.size());
  putBig(payload, 0, 4, address);
  putBig(payload, 4, 2, static_cast<std::int64_t>(data.size()));
  std::ranges::copy(data, payload.begin() + kHead);
  return engine::buildFrame(retried ? 0x30 : 0x00, payload, engine::SumForm::BoardCrc);
}

}  // namespace kvr::offline
