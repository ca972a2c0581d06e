#pragma once

#include "platform/wall_clock.h"

namespace kvr::platform {

class QtClock : public WallClock {
 public:
  std::string timeOfDay() const override;
  std::string timeOfDayMillis() const override;
  std::string dateTime() const override;
};

}  // namespace kvr::platform
