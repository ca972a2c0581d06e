// One model of the KVR range, as the rest of the program reads it: memory ranges and the flags that choose the variant
// of the protocol. A new model is one new row of the tables beside this file.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace kvr::catalogue {

struct McuRecord {
  int family = 0;              // 0..18; 14 is unused
  int row = 0;                 // place inside the family's table, 0..140; tables may leave gaps
  std::string_view code;       // what the chip reports, upper-case hexadecimal; 4 digits, 2 in families 0 and 1
  std::string_view altCode;    // a second code of the same model, or empty (family 4 only)
  std::string_view name;       // such as "Ivy-HF0S"; several rows may bear one name, the first is meant
  std::int32_t apStart = 0;    // application area, first byte; always 0
  std::int32_t apEnd = 0;      // application area, last byte
  std::int32_t dataStart = 0;  // Data Memory (EEPROM) area as the loaders see it
  std::int32_t dataEnd = 0;    // less than dataStart + 100: no usable Data Memory
  std::int32_t bootStart = 0;  // boot block as listed
  std::int32_t bootEnd = 0;    // last byte of the boot block: the top of everything a code file may reach
  bool apUpToIsp = false;      // families 1, 2, 11, 12, 13: the application ends right under the ISP area
  bool listed = true;          // shown in the device tree
  bool extSession = false;     // the later session: status bytes in replies, extra closing frames
  bool parityUsed = false;
  bool parityEven = false;
  bool frame2 = false;  // two-byte frame checksum
  bool noOptions = false;
  bool topBlockFree = false;  // the last block below the boot area is usable
  bool noDataFile = false;    // no separate Data Memory file is offered
};

// All rows, by family and row: the order in which look-ups search.
std::span<const McuRecord> allRows();

// The first row that bears the name, exactly; null when no row does.
const McuRecord* findByName(std::string_view name);

// The row that a code reported by a chip stands for. Two characters are looked up in family 1 only; any other code by
// `code` or `altCode` in families 2 and up, first hit in family order. Blanks around the code are ignored. Null:
// unknown.
const McuRecord* findModelByCode(std::string_view code);

// "Alder" .. "Rowan"; empty for a number without a family.
std::string_view seriesName(int family);

// Families 11, 12, 13: the late members of the first protocol generation.
bool isLateFamily(int family);

// Programming unit in bytes: 128 for family 0, else 512.
int blockSizeOf(int family);

// The option layout class of a family: 0 (0, 1, 2, 11..14), 1 (3..5), 2 (6..10), 3 (18), 4 (15..17).
int familyClassOf(int family);

// True when the model takes a separate Data Memory file.
bool hasDataFile(const McuRecord& record);

// True when a run programs that Data Memory file. Rowan models take one that no run sends.
bool dataFileIsProgrammed(const McuRecord& record);

// True for names that end in a lower-case 'i': their application may rewrite its own code area.
bool isSelfWriting(const McuRecord& record);

// 'H' or 'L', the letter behind the dash of the name; 0 when there is none.
char voltageClass(const McuRecord& record);

// The range that the application may use, as the two range labels show it.
struct IspRange {
  std::int32_t ispStart = 0;  // first byte of the ISP area
  std::int32_t apStart = 0;
  std::int32_t top = 0;  // last address that the application may use
};
IspRange computeIspRange(const McuRecord& record);

}  // namespace kvr::catalogue
