// What follows from a row: its series, its class, the range its application may use.
#include "catalogue/mcu_record.h"

#include <array>

namespace kvr::catalogue {
namespace {

constexpr std::array<std::string_view, 19> kSeries = {"Alder", "Birch",   "Cedar",  "Elm",   "Fir",   "Gum",    "Hazel",
                                                      "Ivy",   "Juniper", "Kauri",  "Larch", "Maple", "Nutmeg", "Oak",
                                                      "",      "Pine",    "Quince", "Sumac", "Rowan"};

constexpr int kSmallestDataMemory = 100;  // a difference of first and last byte up to this means: none

// Two Cedar sizes carry a boot firmware of 2 KB.
bool hasLargeIsp(std::string_view name) {
  return name == "Cedar-L50D" || name == "Cedar-H50D" || name == "Cedar-LF4D" || name == "Cedar-HF4D";
}

// Where the boot firmware of a later family begins, whatever the row lists as its boot block; 0: no such rule.
std::int32_t fixedIspStart(int family) {
  switch (family) {
    case 3:
    case 6:
    case 9:
    case 15:
    case 16:
      return 5120;
    case 4:
    case 5:
      return 28672;
    case 7:
    case 10:
      return 62464;
    case 8:
    case 17:
      return 13312;
    default:
      return 0;
  }
}

}  // namespace

std::string_view seriesName(int family) {
  return family >= 0 && family < static_cast<int>(kSeries.size()) ? kSeries[static_cast<std::size_t>(family)]
                                                                  : std::string_view{};
}

bool isLateFamily(int family) {
  return family >= 11 && family <= 13;
}

int blockSizeOf(int family) {
  return family == 0 ? 128 : 512;
}

int familyClassOf(int family) {
  if (family == 18) return 3;
  if (family >= 15 && family <= 17) return 4;
  if (family >= 11) return 0;
  if (family >= 6) return 2;
  return family >= 3 ? 1 : 0;
}

bool hasDataFile(const McuRecord& record) {
  const bool keptApart = record.family >= 5 && !isLateFamily(record.family);
  return keptApart && !record.noDataFile && record.dataEnd - record.dataStart > kSmallestDataMemory;
}

bool dataFileIsProgrammed(const McuRecord& record) {
  return hasDataFile(record) && record.family != 18;
}

bool isSelfWriting(const McuRecord& record) {
  return record.name.ends_with('i');
}

char voltageClass(const McuRecord& record) {
  const auto dash = record.name.find('-');
  return dash != std::string_view::npos && dash + 1 < record.name.size() ? record.name[dash + 1] : '\0';
}

IspRange computeIspRange(const McuRecord& record) {
  const int family = record.family;
  IspRange range{.ispStart = 0, .apStart = record.apStart, .top = record.apEnd};
  if (family == 0) range.ispStart = record.bootStart;
  if (family == 1 || family == 2 || isLateFamily(family)) {
    range.ispStart = record.bootEnd - (hasLargeIsp(record.name) ? 2048 : 1024) + 1;
    if (record.apUpToIsp) range.top = range.ispStart - 1;
  }
  if (const auto fixed = fixedIspStart(family); fixed != 0) range.ispStart = fixed;
  return range;
}

}  // namespace kvr::catalogue
