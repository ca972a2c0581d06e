// One model of the KVR range, as the rest of the program reads it: memory ranges and the flags that choose the variant
// of the protocol. A new model is one new row of the tables beside this file.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "catalogue/family.h"

namespace kvr::catalogue {

// What single models have of their own.
struct ModelQuirks {
  int eraseSectors = 255;         // that firmwares erase which do not count by the code; 255: all
  bool largeIsp = false;          // a boot firmware of 2 KB
  bool splitData = false;         // Data Memory begins at 8000h in the file
  bool firmwareKeepsTop = false;  // firmwares keep more of the top of flash than the row says
  bool secondLetter = false;      // the stepping letter is the second one of the family
  bool smallOptionByte = false;   // Alder: the option byte of small parts
  bool operator==(const ModelQuirks&) const = default;
};

struct McuRecord {
  Family family = Family::Alder;
  int row = 0;                 // place inside the family's table, 0..140; tables may leave gaps
  std::string_view code;       // what the chip reports, upper-case hexadecimal; 4 digits, 2 in Alder and Birch
  std::string_view altCode;    // a second code of the same model, or empty (Fir only)
  std::string_view name;       // such as "Ivy-HF0S"; several rows may carry one name, the first is meant
  std::int32_t apStart = 0;    // application area, first byte; always 0
  std::int32_t apEnd = 0;      // application area, last byte
  std::int32_t dataStart = 0;  // Data Memory (EEPROM) area as the loaders see it
  std::int32_t dataEnd = 0;    // less than dataStart + 100: no usable Data Memory
  std::int32_t bootStart = 0;  // boot block as listed
  std::int32_t bootEnd = 0;    // last byte of the boot block: the top of everything a code file may reach
  bool apUpToIsp = false;      // first generation: the application ends right under the ISP area
  bool listed = true;          // shown in the device tree
  bool extSession = false;     // the later session: status bytes in replies, extra closing frames
  bool parityUsed = false;
  bool parityEven = false;
  bool frame2 = false;  // two-byte frame checksum
  bool noOptions = false;
  bool topBlockFree = false;  // the last block below the boot area is usable
  bool noDataFile = false;    // no separate Data Memory file is offered
  ModelQuirks quirks{};
};

// All rows, by family and row: the order in which look-ups search.
std::span<const McuRecord> allRows();

// The first row that carries the name, exactly; null when no row does.
const McuRecord* findByName(std::string_view name);

// The row of a code that a chip has reported. Each family says how many digits its codes have, or that it is not
// looked up; a second code counts like the first. The first hit in table order counts, blanks around the code do not.
// Null: unknown.
const McuRecord* findModelByCode(std::string_view code);

inline const FamilyTraits& traitsOf(const McuRecord& record) {
  return traitsOf(record.family);
}

// Whether the part is one of its family's larger ones, and the size that follows from that.
bool isLargerPart(const McuRecord& record);
std::int32_t sizeFor(const McuRecord& record, const CodeSizes& sizes);

// True when the model takes a separate Data Memory file.
bool hasDataFile(const McuRecord& record);

// True when a run programs that Data Memory file. Rowan models take one that no run sends.
bool dataFileIsProgrammed(const McuRecord& record);
// What the user is told of a data file when it is not.
inline constexpr std::string_view kDataFileNotProgrammed = "The EEPROM file is not programmed in this series.";

// True for names that end in a lower-case 'i': their application may rewrite its own code area.
bool isSelfWriting(const McuRecord& record);

// 'H' or 'L', the letter after the dash of the name; 0 when there is none.
char voltageClass(const McuRecord& record);

// The range that the application may use, as the two range labels show it.
struct IspRange {
  std::int32_t ispStart = 0;  // first byte of the ISP area
  std::int32_t apStart = 0;
  std::int32_t top = 0;  // last address that the application may use
};
IspRange computeIspRange(const McuRecord& record);

}  // namespace kvr::catalogue
