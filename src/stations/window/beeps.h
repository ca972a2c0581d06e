// A beep pattern a verdict: one for PASS, two for PASS, PART LEFT OUT, three for FAIL. Those of several stations follow
// each other with a longer silence between, so that they can be counted.
#pragma once

#include <QTimer>
#include <deque>
#include <functional>

#include "signs/sign.h"

namespace kvr::tiles {

class Beeps {
 public:
  explicit Beeps(std::function<void()> sound);
  void play(signs::Sign verdict);
  void silence() { left_.clear(); }

 private:
  void next();
  std::function<void()> sound_;
  QTimer gap_;
  std::deque<int> left_;  // of each pattern
};

}  // namespace kvr::tiles
