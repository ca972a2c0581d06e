// How the chip in hand is, as every window and terminal shows it.
#pragma once

namespace kvr::signs {

enum class Sign { Ready, Waiting, Working, BatchFull, Pass, PassInPart, Fail };

constexpr const char* wordOf(Sign sign) {
  switch (sign) {
    case Sign::Waiting:
      return "WAITING";
    case Sign::Working:
      return "WORKING";
    case Sign::BatchFull:
      return "BATCH FULL";
    case Sign::Pass:
      return "PASS";
    case Sign::PassInPart:
      return "PASS, PART LEFT OUT";
    case Sign::Fail:
      return "FAIL";
    case Sign::Ready:
      break;
  }
  return "READY";
}

constexpr bool isVerdict(Sign sign) {
  return sign >= Sign::Pass;
}

}  // namespace kvr::signs
