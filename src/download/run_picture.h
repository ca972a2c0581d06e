// A run as a picture, before it is drawn: its stages as bars on a line of time, its setbacks as marks, its figures.
#pragma once

#include <string>
#include <vector>

#include "download/run_history.h"

namespace kvr::download {

struct RunPicture {
  struct Bar {
    engine::Stage stage = engine::Stage::Identify;
    std::string name;          // "Program"
    platform::Micros from{0};  // since the chip's answer
    platform::Micros length{0};
  };
  struct Mark {
    std::string meaning;     // "block sent again"
    bool loss = false;       // the port or the run was lost there
    platform::Micros at{0};  // since the chip's answer; before it: 0
  };

  std::string title;      // "2026-01-31 12:00:00  Ivy-HF0S  PASS"
  std::string figures;    // "4.2 s after 1.3 s of waiting, 60.0 kB, 8.0 kB/s, 2 blocks sent again"
  std::string failure;    // why it did not pass
  std::vector<Bar> bars;  // in order, without those that took no time
  std::vector<Mark> marks;
  platform::Micros length{0};  // from the chip's answer to the end
};

RunPicture pictureOf(const RunRecord& run);
// "0.35 s", "12.4 s", "130 s"
std::string secondsText(platform::Micros time);
// Distance of the marks on an axis of this length that has at most ten of them: 1, 2 or 5 times a power of ten.
platform::Micros axisStep(platform::Micros length);

}  // namespace kvr::download
