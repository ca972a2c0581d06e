// What follows from a row: the files it takes, its size class, the range its application may use.
#include "catalogue/mcu_record.h"

namespace kvr::catalogue {
namespace {

constexpr int kSmallestDataMemory = 100;  // a difference of first and last byte up to this means: none

std::int32_t ispStartOf(const McuRecord& record) {
  const FamilyTraits& traits = traitsOf(record);
  switch (traits.ispFrom) {
    case IspFrom::BootBlock:
      return record.bootStart;
    case IspFrom::BelowBootEnd:
      return record.bootEnd - (record.quirks.largeIsp ? 2048 : 1024) + 1;
    case IspFrom::Address:
      return traits.ispStart;
    case IspFrom::Nowhere:
      break;
  }
  return 0;
}

}  // namespace

bool isLargerPart(const McuRecord& record) {
  switch (traitsOf(record).largerParts) {
    case LargerParts::From15K:
      return record.apEnd >= 15 * 1024;
    case LargerParts::BootAbove16K:
      return record.bootStart >= 16 * 1024;
    case LargerParts::TopBlockFree:
      break;
  }
  return record.topBlockFree;
}

std::int32_t sizeFor(const McuRecord& record, const CodeSizes& sizes) {
  return isLargerPart(record) ? sizes.larger : sizes.usual;
}

bool hasDataFile(const McuRecord& record) {
  const bool usable = record.dataEnd - record.dataStart > kSmallestDataMemory;
  return traitsOf(record).dataFile && !record.noDataFile && usable;
}

bool dataFileIsProgrammed(const McuRecord& record) {
  return hasDataFile(record) && traitsOf(record).sends == SendShape::CodeAndData;
}

bool isSelfWriting(const McuRecord& record) {
  return record.name.ends_with('i');
}

char voltageClass(const McuRecord& record) {
  const auto dash = record.name.find('-');
  return dash != std::string_view::npos && dash + 1 < record.name.size() ? record.name[dash + 1] : '\0';
}

IspRange computeIspRange(const McuRecord& record) {
  IspRange range{.ispStart = ispStartOf(record), .apStart = record.apStart, .top = record.apEnd};
  if (traitsOf(record).ispFrom == IspFrom::BelowBootEnd && record.apUpToIsp) range.top = range.ispStart - 1;
  return range;
}

}  // namespace kvr::catalogue
