// The families' rows: one line a family in each table, all columns given. What each column says is in family.h.
#pragma once

#include <array>

#include "catalogue/family.h"

namespace kvr::catalogue::rows {

inline constexpr std::int32_t kNoLimit = 65537;  // more than any chip or board holds
inline constexpr CodeSizes kAny{kNoLimit, kNoLimit};

namespace tables {

template <class T>
struct Line {
  Family family;
  T traits;
};

using enum Family;
using enum Generation;
using enum FirstContact;
using enum Oscillator;
using enum ModelCheck;
using enum SendShape;
using enum LargerParts;
using enum IspFrom;
inline constexpr auto None = CodeLookup::None, TwoDigits = CodeLookup::TwoDigits, FourDigits = CodeLookup::FourDigits;
using W = WaitRules;
using P = BaudPace;
using L = OptionLayout;
using R = RegisterList;
using K = OldOptionKeys;
inline constexpr auto Timer = BaudDivider::Timer, Modes = BaudDivider::Modes;

// clang-format off

// name, stepping letters, generation, first contact, oscillator, code lookup, letter shared with kin, size told,
// model check
inline constexpr SessionTraits kSession[] = {
    {Alder,   "Alder",   "A",  First, SyncBytes, External,      None,       false, false, ByBlockSize},
    {Birch,   "Birch",   "B",  First, SyncBytes, External,      TwoDigits,  false, true,  ByRow},
    {Cedar,   "Cedar",   "C",  First, SyncBytes, External,      FourDigits, true, true,  ByCode},
    {Elm,     "Elm",     "D",  Later, SyncBytes, External,      FourDigits, false, true,  ByCode},
    {Fir,     "Fir",     "EF", Later, SyncBytes, External,      FourDigits, false, true,  ByName},
    {Gum,     "Gum",     "G",  Later, SyncBytes, External,      FourDigits, false, true,  ByCode},
    {Hazel,   "Hazel",   "H",  Later, SyncBytes, External,      FourDigits, false, true,  ByCode},
    {Ivy,     "Ivy",     "I",  Later, SyncBytes, External,      FourDigits, false, true,  ByCode},
    {Juniper, "Juniper", "J",  Later, SyncBytes, External,      FourDigits, false, true,  ByCode},
    {Kauri,   "Kauri",   "K",  Later, SyncBytes, External,      FourDigits, false, true,  ByCode},
    {Larch,   "Larch",   "L",  Later, SyncBytes, External,      FourDigits, false, true,  ByCode},
    {Maple,   "Maple",   "M",  First, SyncBytes, External,      FourDigits, false, true,  ByCode},
    {Nutmeg,  "Nutmeg",  "N",  First, SyncBytes, External,      FourDigits, false, true,  ByCode},
    {Oak,     "Oak",     "O",  First, SyncBytes, External,      FourDigits, false, true,  ByCode},
    {Pine,    "Pine",    "Q",  Later, Pulses,    Measured,      FourDigits, false, true,  ByCode},
    {Quince,  "Quince",  "R",  Later, Pulses,    Measured,      FourDigits, false, true,  ByCode},
    {Sumac,   "Sumac",   "S",  Later, Pulses,    TrimmedByHand, FourDigits, false, true,  ByCode},
    {Rowan,   "Rowan",   "Z",  Later, SyncBytes, External,      FourDigits, false, true,  ByCode},
};

// baud divider, wait rules, pace of a baud change, offset of the upper bands, countdown of the erase, frame size
inline constexpr Line<FrameTraits> kFrames[] = {
    {Alder,   Timer, W::Fixed, P::Usual, 0,  115, 128},
    {Birch,   Timer, W::Birch, P::Birch, 0,  115, 128},
    {Cedar,   Timer, W::Cedar, P::Usual, 0,  115, 128},
    {Elm,     Modes, W::Later, P::Usual, 0,  115, 128},
    {Fir,     Modes, W::Later, P::Usual, 0,  115, 128},
    {Gum,     Modes, W::Later, P::Usual, 0,  115, 128},
    {Hazel,   Modes, W::Later, P::Usual, 0,  115, 128},
    {Ivy,     Modes, W::Later, P::Usual, 0,  115, 128},
    {Juniper, Modes, W::Later, P::Usual, 0,  115, 128},
    {Kauri,   Modes, W::Later, P::Usual, 0,  115, 128},
    {Larch,   Modes, W::Later, P::Usual, 0,  115, 128},
    {Maple,   Timer, W::Cedar, P::Usual, 0,  115, 128},
    {Nutmeg,  Timer, W::Cedar, P::Usual, 0,  115, 128},
    {Oak,     Timer, W::Cedar, P::Usual, 0,  115, 128},
    {Pine,    Modes, W::Later, P::Usual, 24, 34,  64},
    {Quince,  Modes, W::Later, P::Usual, 32, 34,  64},
    {Sumac,   Modes, W::Later, P::Usual, 0,  115, 128},
    {Rowan,   Modes, W::Later, P::Usual, 0,  115, 128},
};

// boot area from, its address, Data Memory, data file, gap is code, firmware keeps the top, what is sent, larger parts,
// block size
inline constexpr Line<MemoryTraits> kMemory[] = {
    {Alder,   BootBlock,    0,     false, false, false, false, WholeImage,  TopBlockFree, 128},
    {Birch,   BelowBootEnd, 0,     false, false, false, false, WholeImage,  TopBlockFree, 512},
    {Cedar,   BelowBootEnd, 0,     true,  false, false, true,  WholeImage,  TopBlockFree, 512},
    {Elm,     Address,      5120,  true,  false, true,  false, CodeAndData, TopBlockFree, 512},
    {Fir,     Address,      28672, true,  false, false, false, CodeAndData, From15K,      512},
    {Gum,     Address,      28672, true,  true,  false, false, CodeAndData, TopBlockFree, 512},
    {Hazel,   Address,      5120,  true,  true,  false, false, CodeAndData, TopBlockFree, 512},
    {Ivy,     Address,      62464, true,  true,  false, false, CodeAndData, TopBlockFree, 512},
    {Juniper, Address,      13312, true,  true,  false, false, CodeAndData, TopBlockFree, 512},
    {Kauri,   Address,      5120,  true,  true,  false, false, CodeAndData, TopBlockFree, 512},
    {Larch,   Address,      62464, true,  true,  false, false, CodeAndData, TopBlockFree, 512},
    {Maple,   BelowBootEnd, 0,     true,  false, false, false, WholeImage,  TopBlockFree, 512},
    {Nutmeg,  BelowBootEnd, 0,     true,  false, false, false, WholeImage,  BootAbove16K, 512},
    {Oak,     BelowBootEnd, 0,     true,  false, false, false, WholeImage,  TopBlockFree, 512},
    {Pine,    Address,      5120,  true,  true,  false, false, CodeAndData, TopBlockFree, 512},
    {Quince,  Address,      5120,  true,  true,  false, false, CodeAndData, TopBlockFree, 512},
    {Sumac,   Address,      13312, true,  true,  false, false, CodeAndData, TopBlockFree, 512},
    {Rowan,   Nowhere,      0,     true,  true,  false, false, UpToDataEnd, TopBlockFree, 512},
};

// bytes of code: a lone image for firmwares up to 5.0, for later ones; that a board gives a chip; a board's lone image
inline constexpr Line<SizeTraits> kSizes[] = {
    {Alder,   kNoLimit, kAny,           {0, 0},         kAny},
    {Birch,   kNoLimit, kAny,           {63488, 63488}, kAny},
    {Cedar,   kNoLimit, kAny,           {62464, 62464}, kAny},
    {Elm,     5120,     {24064, 24064}, {5120, 5120},   {24064, 24064}},
    {Fir,     12288,    {24064, 28672}, {28672, 28672}, {24064, 28672}},
    {Gum,     12288,    {28672, 30720}, {28672, 30720}, {28672, 30720}},
    {Hazel,   12288,    {5120, 6144},   {5120, 6144},   {5120, 6144}},
    {Ivy,     12288,    {62464, 63488}, {62464, 63488}, {62464, 63488}},
    {Juniper, 12288,    {13312, 14336}, {13312, 14336}, {13312, 14336}},
    {Kauri,   12288,    {5120, 6144},   {5120, 6144},   {5120, 6144}},
    {Larch,   12288,    {62464, 63488}, {62464, 63488}, {62464, 63488}},
    {Maple,   kNoLimit, kAny,           {62464, 62464}, kAny},
    {Nutmeg,  kNoLimit, kAny,           {13312, 62464}, kAny},
    {Oak,     kNoLimit, kAny,           {62464, 62464}, kAny},
    {Pine,    12288,    {5120, 6144},   {13312, 14336}, {13312, 14336}},
    {Quince,  12288,    {5120, 6144},   {13312, 14336}, {13312, 14336}},
    {Sumac,   12288,    {13312, 14336}, {13312, 14336}, {13312, 14336}},
    {Rowan,   kNoLimit, kAny,           {61440, 61440}, {1, 1}},
};

// layout, slot of the panel, slot of the project, reported, wake-up delay, note on low power, unused area from,
// byte of the watchdog's prescaler, bit that keeps Data Memory, keys in old projects
inline constexpr Line<OptionTraits> kOptions[] = {
    {Alder,   L::AlderByte,  0,  0,  false, false, false, 0,     -1, {8, 1}, K::Others},
    {Birch,   L::None,       1,  1,  false, false, false, 0,     -1, {8, 1}, K::Others},
    {Cedar,   L::CedarByte,  2,  2,  true,  false, false, 0,     -1, {8, 1}, K::Cedar},
    {Elm,     L::Short,      4,  4,  true,  false, false, 0,     3,  {8, 1}, K::Others},
    {Fir,     L::Short,      4,  4,  true,  false, false, 0,     3,  {8, 1}, K::Others},
    {Gum,     L::Short,      4,  4,  true,  false, false, 0,     3,  {8, 1}, K::Others},
    {Hazel,   L::ShortHazel, 5,  5,  true,  false, false, 0,     3,  {8, 1}, K::Others},
    {Ivy,     L::Long,       6,  6,  true,  false, false, 0,     2,  {8, 1}, K::Others},
    {Juniper, L::Long,       7,  7,  true,  false, false, 0,     2,  {8, 1}, K::Others},
    {Kauri,   L::Long,       8,  8,  true,  true,  false, 0,     2,  {8, 1}, K::Others},
    {Larch,   L::Long,       9,  9,  true,  true,  false, 0,     2,  {8, 1}, K::Others},
    {Maple,   L::CedarByte,  2,  2,  false, false, false, 0,     -1, {1, 3}, K::Others},
    {Nutmeg,  L::CedarByte,  2,  2,  true,  false, false, 0,     -1, {1, 3}, K::Others},
    {Oak,     L::CedarByte,  2,  2,  false, false, false, 0,     -1, {1, 3}, K::Others},
    {Pine,    L::All,        10, 7,  true,  false, false, 0,     2,  {8, 1}, K::Others},
    {Quince,  L::All,        10, 10, true,  false, false, 0,     2,  {8, 1}, K::Others},
    {Sumac,   L::All,        7,  7,  false, false, false, 0,     2,  {8, 1}, K::Others},
    {Rowan,   L::Rowan,      15, 15, false, false, true,  16384, 4,  {8, 1}, K::Others},
};

// off-line board, extra pages, register list
inline constexpr Line<ServiceTraits> kServices[] = {
    {Alder,   false, false, R::None},
    {Birch,   true,  true,  R::None},
    {Cedar,   true,  true,  R::Cedar},
    {Elm,     true,  true,  R::Elm},
    {Fir,     true,  true,  R::Fir},
    {Gum,     true,  true,  R::None},
    {Hazel,   true,  true,  R::None},
    {Ivy,     true,  true,  R::None},
    {Juniper, true,  true,  R::None},
    {Kauri,   true,  true,  R::None},
    {Larch,   true,  true,  R::None},
    {Maple,   true,  true,  R::None},
    {Nutmeg,  true,  true,  R::None},
    {Oak,     true,  true,  R::None},
    {Pine,    true,  true,  R::None},
    {Quince,  true,  true,  R::None},
    {Sumac,   true,  true,  R::None},
    {Rowan,   false, true,  R::None},
};

// clang-format on

}  // namespace tables

inline constexpr std::size_t kFamilyCount = std::size(tables::kSession);

// Number 14 was never given to a family.
constexpr std::size_t placeOf(Family family) {
  const auto number = static_cast<std::size_t>(family);
  return family < Family::Pine ? number : number - 1;
}

inline constexpr auto kFamilies = [] {
  std::array<FamilyTraits, kFamilyCount> all{};
  for (std::size_t i = 0; i < all.size(); ++i)
    all[i] = {tables::kSession[i],      tables::kFrames[i].traits,  tables::kMemory[i].traits,
              tables::kSizes[i].traits, tables::kOptions[i].traits, tables::kServices[i].traits};
  return all;
}();

// Each table has a line for each family, in order, and no line lacks its last column.
static_assert([] {
  for (const std::size_t lines : {std::size(tables::kFrames), std::size(tables::kMemory), std::size(tables::kSizes),
                                  std::size(tables::kOptions), std::size(tables::kServices)})
    if (lines != kFamilyCount) return false;
  for (std::size_t i = 0; i < kFamilyCount; ++i) {
    const FamilyTraits& row = kFamilies[i];
    for (const Family family : {row.family, tables::kFrames[i].family, tables::kMemory[i].family,
                                tables::kSizes[i].family, tables::kOptions[i].family, tables::kServices[i].family})
      if (placeOf(family) != i) return false;
    if (row.modelCheck == ModelCheck{} || row.frameSize == 0 || row.blockSize == 0) return false;
    if (row.boardImage.larger == 0 || row.oldKeys == OldOptionKeys{} || row.registers == RegisterList{}) return false;
  }
  return placeOf(Family::Rowan) + 1 == kFamilyCount;
}());

}  // namespace kvr::catalogue::rows
