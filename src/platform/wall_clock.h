// The date and the time of day, local.
#pragma once

#include <string>

namespace kvr::platform {

class WallClock {
 public:
  virtual ~WallClock() = default;
  virtual std::string timeOfDay() const = 0;  // "hh:mm:ss"
  // "hh:mm:ss.mmm", for stamps that follow each other closely; a clock without fractions gives "hh:mm:ss".
  virtual std::string timeOfDayMillis() const { return timeOfDay(); }
  virtual std::string dateTime() const = 0;  // "yyyy-mm-dd hh:mm:ss"
};

}  // namespace kvr::platform
