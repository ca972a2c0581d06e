#include "cli/stopper.h"

namespace kvr::cli {

void Stopper::end(Cut cut) {
  if (cut_ == Cut::None) cut_ = cut;
  stop.request();
  lease_.close();
}

}  // namespace kvr::cli
