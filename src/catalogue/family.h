// The families of the range and what sets them apart: each question that the program asks of a family is a named trait.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "catalogue/firmware_version.h"

namespace kvr::catalogue {

// The values are the numbers that travel on the line.
// clang-format off
enum class Family : std::uint8_t {
  Alder, Birch, Cedar, Elm, Fir, Gum, Hazel, Ivy, Juniper, Kauri, Larch, Maple, Nutmeg, Oak, Pine = 15, Quince, Sumac,
  Rowan
};

enum class Generation { First = 1, Later };         // First: code, Data Memory and boot area share one map
enum class FirstContact { SyncBytes = 1, Pulses };  // Pulses: the chip measures four counts instead of eight
enum class Oscillator { External = 1, TrimmedByHand, Measured };
enum class BaudDivider { Timer = 1, Modes };        // a plain 16-bit timer; or a mode byte and eight bits
enum class WaitRules { Fixed = 1, Birch, Cedar, Later };
enum class BaudPace { Usual = 1, Birch };
enum class CodeLookup { None = 1, TwoDigits, FourDigits };
enum class ModelCheck { ByBlockSize = 1, ByRow, ByName, ByCode };
enum class SendShape { WholeImage = 1, UpToDataEnd, CodeAndData };
enum class LargerParts { TopBlockFree = 1, From15K, BootAbove16K };
enum class RegisterList { None = 1, Cedar, Elm, Fir };
enum class OldOptionKeys { Cedar = 1, Others };

// How the option bytes travel, and so which of them a chip has.
enum class OptionLayout {
  None = 1,    // no options
  AlderByte,   // one byte that says more than the choices
  CedarByte,   // byte 1, sent with the reload values of the timer
  Short,       // bytes 2, 3, 8, 10, 11, later firmwares 0 to 3, 8, 9
  ShortHazel,  // the same with byte 0
  Long,        // bytes 0 to 3, 8, 9
  All,         // bytes 0 to 15
  Rowan        // as Long, and a second frame of its own
};
// clang-format on

// Status and option frames hold the bytes in the order of their numbers.
constexpr bool isLong(OptionLayout layout) {
  return layout >= OptionLayout::Long;
}

struct SessionTraits {
  Family family;
  std::string_view name;
  std::string_view letters;  // stepping letters; the second one is that of parts marked `secondLetter`
  Generation generation;
  FirstContact firstContact;
  Oscillator oscillator;
  CodeLookup codes;       // under which codes a chip of the family is looked up
  bool kinShareLetter;    // chips of other families with the same option layout may report this letter, too
  bool tellsSize;         // firmwares tell how much room they take; one that does not is an old one
  ModelCheck modelCheck;  // how the firmware proves that the chip is the selected model
};

struct FrameTraits {
  BaudDivider divider;
  WaitRules waits;
  BaudPace pace;
  int upperBandOffset;  // what the coarse register of a measured oscillator adds in its two upper bands
  int eraseCountdown;   // length of the row of falling bytes at the end of the erase frame
  int frameSize;        // data bytes in a frame
};

// Where the boot firmware's area begins.
enum class IspFrom { Nowhere = 1, BootBlock, BelowBootEnd, Address };

struct MemoryTraits {
  IspFrom ispFrom;
  std::int32_t ispStart;  // with IspFrom::Address
  bool dataMemory;        // there is Data Memory in the chip's map
  bool dataFile;          // it may be given in a file of its own
  bool gapIsCode;         // what lies between code and Data Memory can be programmed, too
  bool firmwareKeepsTop;  // firmwares keep more of the top of flash than the rows say
  SendShape sends;
  LargerParts largerParts;
  int blockSize;  // programming unit, bytes
};

// Bytes from address 0 on: of the family's usual parts, and of its larger ones.
struct CodeSizes {
  std::int32_t usual;
  std::int32_t larger;
};

struct SizeTraits {
  std::int32_t oldCode;  // of a lone code image, for firmwares up to 5.0
  CodeSizes code;        // the same for later firmwares
  CodeSizes boardCode;   // that an off-line board gives a chip
  CodeSizes boardImage;  // of a lone code image that a board takes
};

struct OptionBit {
  std::size_t byte;
  int bit;
  constexpr bool clearIn(std::span<const std::uint8_t> bytes) const { return (bytes[byte] >> bit & 1) == 0; }
};

struct OptionTraits {
  OptionLayout layout;
  int panelSlot;            // the option table that the panel is filled from
  int projectSlot;          // the table that says which option keys a project file holds
  bool reported;            // a report of the chip lists its options with the table's texts
  bool wakeUpDelay;         // bits 4 and 5 of byte 0 are the wait after a wake-up
  bool lowPowerNote;        // the page carries a note about the oscillator's gain
  std::int32_t unusedFrom;  // parts whose application ends below this have no unused area to choose about
  int watchdogByte;         // holds the prescaler in its low three bits; -1: none
  OptionBit keepsData;      // 0: an erase takes Data Memory, too
  OldOptionKeys oldKeys;    // how the first project files named the options
};

struct ServiceTraits {
  bool offlineBoard;  // a board can program these chips
  bool extraPages;    // the pages of demo, off-line board and register monitor are offered
  RegisterList registers;
};

struct FamilyTraits : SessionTraits, FrameTraits, MemoryTraits, SizeTraits, OptionTraits, ServiceTraits {
  // One option layout of the first generation serves Cedar, Maple, Nutmeg and Oak.
  constexpr bool cedarOptions() const { return layout == OptionLayout::CedarByte; }
  constexpr bool shortOptions() const { return layout == OptionLayout::Short || layout == OptionLayout::ShortHazel; }
  constexpr bool allOptions() const { return layout == OptionLayout::All; }
  constexpr bool longOptions() const { return isLong(layout); }
  constexpr bool usesTimer() const { return divider == BaudDivider::Timer; }
  constexpr bool firstGeneration() const { return generation == Generation::First; }
  constexpr bool pulses() const { return firstContact == FirstContact::Pulses; }
  constexpr bool measuresOscillator() const { return oscillator == Oscillator::Measured; }
};

// In the order of their numbers.
std::span<const FamilyTraits> allFamilies();
const FamilyTraits& traitsOf(Family family);

// The number that travels in the frames.
constexpr int numberOf(Family family) {
  return static_cast<int>(family);
}

// The family of a stepping letter; nothing for any other byte.
std::optional<Family> familyOf(Stepping stepping);

}  // namespace kvr::catalogue
