// What the chips know of their families, by number and of their own.
#pragma once

#include "catalogue/mcu_record.h"

namespace sim {

using kvr::catalogue::McuRecord;

inline int familyOf(const McuRecord& row) {
  return static_cast<int>(row.family);
}

// Maple, Nutmeg, Oak: late members of the first generation.
inline bool isLateFirst(int family) {
  return family == 11 || family == 12 || family == 13;
}

// Pine, Quince, Sumac keep sixteen option bytes and tell them all.
inline bool keepsAllOptions(int family) {
  return family == 15 || family == 16 || family == 17;
}

// What the flash takes in one go, bytes.
inline int flashUnitOf(int family) {
  return family == 0 ? 128 : 512;
}

}  // namespace sim
