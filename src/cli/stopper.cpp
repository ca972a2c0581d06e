#include "cli/stopper.h"

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

}  // namespace kvr::cli
