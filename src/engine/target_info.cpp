#include "engine/target_info.h"

#include "platform/text.h"

namespace kvr::engine {

double TargetInfo::versionNumber() const {
  return platform::valueOf(firmwareVersionText);
}

int TargetInfo::version10() const {
  return static_cast<int>(platform::floorOf(versionNumber() * 10 + 0.5));
}

}  // namespace kvr::engine
