// Alder, Birch and Cedar models, one a row in table order. The columns are:
// family, row, code, second code, name, application area, Data Memory area, boot block, and the flags in the order
// apUpToIsp, listed | extSession, parityUsed, parityEven, frame2 | noOptions, topBlockFree, noDataFile; quirks by name.
#pragma once

#include "catalogue/mcu_record.h"

namespace kvr::catalogue::rows {

using enum Family;

// clang-format off

// Nothing but the common hello code FF; the boot block lies above the code or in its last 8 KB.
inline constexpr McuRecord kAlder[] = {
  {Alder,   0, "FF", "", "Alder-H100D", 0, 65535, 65535, 65535, 65536, 73727,  0, 1,  0, 0, 0, 0,  0, 0, 0},
  {Alder,   1, "FF", "", "Alder-L100D", 0, 65535, 65535, 65535, 65536, 73727,  0, 1,  0, 0, 0, 0,  0, 0, 0},
  {Alder,   2, "FF", "", "Alder-H80D",  0, 32767, 32767, 32767, 57344, 65535,  0, 1,  0, 0, 0, 0,  0, 0, 0},
  {Alder,   3, "FF", "", "Alder-L80D",  0, 32767, 32767, 32767, 57344, 65535,  0, 1,  0, 0, 0, 0,  0, 0, 0},
};

// Two-digit codes, a set of their own: a code of two digits is looked up here only.
inline constexpr ModelQuirks kErase124{.eraseSectors = 124, .firmwareKeepsTop = true};
inline constexpr ModelQuirks kErase64{.eraseSectors = 64}, kErase32{.eraseSectors = 32}, kErase16{.eraseSectors = 16};
inline constexpr McuRecord kBirch[] = {
  {Birch,   0, "56", "", "Birch-LFCA", 0, 64511, 64511, 64511, 57344, 65535,  1, 1,  0, 0, 0, 0,  0, 0, 0, kErase124},
  {Birch,   1, "56", "", "Birch-LFCZ", 0, 64511, 64511, 64511, 57344, 65535,  1, 1,  0, 0, 0, 0,  0, 0, 0, kErase124},
  {Birch,   2, "58", "", "Birch-L80A", 0, 32767, 32767, 32767, 57344, 65535,  0, 1,  0, 0, 0, 0,  0, 0, 0, kErase64},
  {Birch,   3, "54", "", "Birch-L40A", 0, 16383, 16383, 16383, 57344, 65535,  0, 1,  0, 0, 0, 0,  0, 0, 0, kErase32},
  {Birch,   4, "52", "", "Birch-L20A", 0,  8191,  8191,  8191, 57344, 65535,  0, 1,  0, 0, 0, 0,  0, 0, 0, kErase16},
};

// H and L models report the same code, so a code alone names the H model.
inline constexpr ModelQuirks kErase30{.eraseSectors = 30}, kErase126{.eraseSectors = 126};
inline constexpr ModelQuirks kSplit126{.eraseSectors = 126, .largeIsp = true, .splitData = true};
inline constexpr McuRecord kCedar[] = {
  {Cedar,   0, "F001", "", "Cedar-H10R", 0,  4095,  4096, 14335, 11264, 15359,  0, 1,  0, 0, 0, 0,  0, 0, 0, kErase30},
  {Cedar,   1, "F002", "", "Cedar-H20R", 0,  8191,  8192, 14335, 11264, 15359,  0, 1,  0, 0, 0, 0,  0, 0, 0, kErase30},
  {Cedar,   2, "F004", "", "Cedar-H38R", 0, 14335, 14336, 14335, 11264, 15359,  0, 1,  0, 0, 0, 0,  0, 0, 0, kErase30},
  {Cedar,   3, "F006", "", "Cedar-H18R", 0,  6143,  6144, 14335, 11264, 15359,  0, 1,  0, 0, 0, 0,  0, 0, 0},
  {Cedar,   4, "F007", "", "Cedar-H1CR", 0,  7167,  7168, 14335, 11264, 15359,  0, 1,  0, 0, 0, 0,  0, 0, 0},
  {Cedar,   5, "F00A", "", "Cedar-H28R", 0, 10239, 10240, 14335, 11264, 15359,  0, 1,  0, 0, 0, 0,  0, 0, 0},
  {Cedar,   6, "F00C", "", "Cedar-H30R", 0, 12287, 12288, 14335, 11264, 15359,  0, 1,  0, 0, 0, 0,  0, 0, 0},
  {Cedar,   7, "F101", "", "Cedar-H10D", 0,  4095,  4096, 63487, 60416, 64511,  0, 1,  0, 0, 0, 0,  0, 0, 0},
  {Cedar,   8, "F102", "", "Cedar-H20D", 0,  8191,  8192, 63487, 60416, 64511,  0, 1,  0, 0, 0, 0,  0, 0, 0},
  {Cedar,   9, "F104", "", "Cedar-H40D", 0, 16383, 16384, 63487, 60416, 64511,  0, 1,  0, 0, 0, 0,  0, 0, 0, kErase126},
  {Cedar,  10, "F105", "", "Cedar-H50D", 0, 20479, 20480, 62463, 60416, 64511,  0, 1,  0, 0, 0, 0,  0, 0, 0, kSplit126},
  {Cedar,  11, "F108", "", "Cedar-H80D", 0, 32767, 32768, 63487, 60416, 64511,  0, 1,  0, 0, 0, 0,  0, 0, 0, kErase126},
  {Cedar,  12, "F10A", "", "Cedar-HA0D", 0, 40959, 40960, 63487, 60416, 64511,  0, 1,  0, 0, 0, 0,  0, 0, 0},
  {Cedar,  13, "F10C", "", "Cedar-HC0D", 0, 49151, 49152, 63487, 60416, 64511,  0, 1,  0, 0, 0, 0,  0, 0, 0},
  {Cedar,  14, "F10D", "", "Cedar-HD0D", 0, 53247, 53248, 63487, 60416, 64511,  0, 1,  0, 0, 0, 0,  0, 0, 0},
  {Cedar,  15, "F10E", "", "Cedar-HE0D", 0, 57343, 57344, 63487, 60416, 64511,  0, 1,  0, 0, 0, 0,  0, 0, 0},
  {Cedar,  16, "F110", "", "Cedar-HF8D", 0, 63487, 63488, 63487, 60416, 64511,  0, 1,  0, 0, 0, 0,  0, 0, 0, kErase126},
  {Cedar,  17, "F001", "", "Cedar-L10R", 0,  4095,  4096, 14335, 11264, 15359,  0, 1,  0, 0, 0, 0,  0, 0, 0, kErase30},
  {Cedar,  18, "F002", "", "Cedar-L20R", 0,  8191,  8192, 14335, 11264, 15359,  0, 1,  0, 0, 0, 0,  0, 0, 0, kErase30},
  {Cedar,  19, "F004", "", "Cedar-L38R", 0, 14335, 14336, 14335, 11264, 15359,  0, 1,  0, 0, 0, 0,  0, 0, 0, kErase30},
  {Cedar,  20, "F006", "", "Cedar-L18R", 0,  6143,  6144, 14335, 11264, 15359,  0, 1,  0, 0, 0, 0,  0, 0, 0},
  {Cedar,  21, "F007", "", "Cedar-L1CR", 0,  7167,  7168, 14335, 11264, 15359,  0, 1,  0, 0, 0, 0,  0, 0, 0},
  {Cedar,  22, "F00A", "", "Cedar-L28R", 0, 10239, 10240, 14335, 11264, 15359,  0, 1,  0, 0, 0, 0,  0, 0, 0},
  {Cedar,  23, "F00C", "", "Cedar-L30R", 0, 12287, 12288, 14335, 11264, 15359,  0, 1,  0, 0, 0, 0,  0, 0, 0},
  {Cedar,  24, "F101", "", "Cedar-L10D", 0,  4095,  4096, 63487, 60416, 64511,  0, 1,  0, 0, 0, 0,  0, 0, 0},
  {Cedar,  25, "F102", "", "Cedar-L20D", 0,  8191,  8192, 63487, 60416, 64511,  0, 1,  0, 0, 0, 0,  0, 0, 0},
  {Cedar,  26, "F104", "", "Cedar-L40D", 0, 16383, 16384, 63487, 60416, 64511,  0, 1,  0, 0, 0, 0,  0, 0, 0, kErase126},
  {Cedar,  27, "F105", "", "Cedar-L50D", 0, 20479, 20480, 62463, 60416, 64511,  0, 1,  0, 0, 0, 0,  0, 0, 0, kSplit126},
  {Cedar,  28, "F108", "", "Cedar-L80D", 0, 32767, 32768, 63487, 60416, 64511,  0, 1,  0, 0, 0, 0,  0, 0, 0, kErase126},
  {Cedar,  29, "F10A", "", "Cedar-LA0D", 0, 40959, 40960, 63487, 60416, 64511,  0, 1,  0, 0, 0, 0,  0, 0, 0},
  {Cedar,  30, "F10C", "", "Cedar-LC0D", 0, 49151, 49152, 63487, 60416, 64511,  0, 1,  0, 0, 0, 0,  0, 0, 0},
  {Cedar,  31, "F10D", "", "Cedar-LD0D", 0, 53247, 53248, 63487, 60416, 64511,  0, 1,  0, 0, 0, 0,  0, 0, 0},
  {Cedar,  32, "F10E", "", "Cedar-LE0D", 0, 57343, 57344, 63487, 60416, 64511,  0, 1,  0, 0, 0, 0,  0, 0, 0},
  {Cedar,  33, "F110", "", "Cedar-LF8D", 0, 63487, 63488, 63487, 60416, 64511,  0, 1,  0, 0, 0, 0,  0, 0, 0, kErase126},
};

// clang-format on

}  // namespace kvr::catalogue::rows
