#include "cli/stopper.h"

#include <utility>

namespace kvr::cli {

void Stopper::end(Cut cut) {
  if (cut_ == Cut::None) cut_ = cut;
  stop.request();
  lease_.close();
}

void Stopper::endAfterChip(Cut cut) {
  endAfterThis(cut);
  afterChip_ = true;
  if (!chipInHand_) end(later_);
}

void Stopper::chipInHand(bool inHand) {
  chipInHand_ = inHand;
  if (!inHand && afterChip_) end(later_);
}

void Stopper::endWait() {
  if (chipInHand_ || pending() != Cut::None) return;
  waitEnded_ = true;
  stop.request();
  lease_.close();
}

bool Stopper::takeWaitEnded() {
  if (waitEnded_ && cut_ == Cut::None) stop.clear();
  return std::exchange(waitEnded_, false);
}

}  // namespace kvr::cli
