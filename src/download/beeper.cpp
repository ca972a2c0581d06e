#include "download/beeper.h"

namespace kvr::download {

Beeper::Beeper(platform::EventLoop& loop, platform::Dialogs& dialogs)
    : dialogs_(dialogs), gap_(loop, [this] { next(); }) {
  gap_.setInterval(kGap);
}

void Beeper::beeps(int count) {
  left_ += count;
  if (!gap_.isActive()) next();
}

void Beeper::next() {
  if (left_ <= 0) return;
  --left_;
  dialogs_.beep();
  gap_.start();
}

}  // namespace kvr::download
