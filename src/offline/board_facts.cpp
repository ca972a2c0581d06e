#include "offline/board_facts.h"

#include <algorithm>

#include "offline/board_image.h"
#include "platform/text.h"

namespace kvr::offline {
namespace {

// A version whose own memory takes no more than the first stage.
bool smallVersion(int version) {
  return version == 15 || version >= 17;
}

int addressesAbove(const catalogue::AddressRange& span, std::int64_t last) {
  return static_cast<int>(std::max<std::int64_t>(0, span.last - std::max<std::int64_t>(last, span.first - 1)));
}

}  // namespace

int BoardFacts::version() const {
  return platform::wholeOf(firmwareVersion);
}

bool BoardFacts::singleStage() const {
  return smallVersion(version()) && !secondBank;
}

int BoardFacts::firstStageLast() const {
  return version() >= 17 ? 63487 : 62463;
}

int BoardFacts::lastHeldCode() const {
  if (secondBank) return 63487;
  return singleStage() ? kMainCodeSize - 1 : kMainCodeSize + kSecondCodeSize - 1;
}

int bytesLeftOut(const FileBuffer& file, std::int64_t codeLast, const BoardFacts& board) {
  const std::int64_t reach = std::min<std::int64_t>(codeLast, board.lastHeldCode());
  return file.cut + addressesAbove(file.code, reach) + addressesAbove(file.data, reach);
}

std::string leftOutText(int bytes) {
  if (bytes == 0) return {};
  if (bytes == 1) return "1 byte of the code and data will not be programmed.";
  return std::to_string(bytes) + " bytes of the code and data will not be programmed.";
}

}  // namespace kvr::offline
