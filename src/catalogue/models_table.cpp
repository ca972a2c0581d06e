#include "catalogue/models_table.h"

#include "catalogue/mcu_record.h"

namespace kvr::catalogue {
namespace {

constexpr std::string_view kHeader =
    "family\trow\tseries\tcode\taltCode\tname\tapStart\tapEnd\tdataStart\tdataEnd\tbootStart\tbootEnd\tapUpToIsp\tliste"
    "d\t"
    "extSession\tparityUsed\tparityEven\tframe2\tnoOptions\ttopBlockFree\tnoDataFile\n";

std::string line(const McuRecord& r) {
  std::string text = std::to_string(numberOf(r.family)) + '\t' + std::to_string(r.row);
  for (const std::string_view cell : {traitsOf(r).name, r.code, r.altCode, r.name}) text.append("\t").append(cell);
  for (const int cell : {r.apStart, r.apEnd, r.dataStart, r.dataEnd, r.bootStart, r.bootEnd}) {
    text.append("\t").append(std::to_string(cell));
  }
  for (const bool flag : {r.apUpToIsp, r.listed, r.extSession, r.parityUsed, r.parityEven, r.frame2, r.noOptions,
                          r.topBlockFree, r.noDataFile}) {
    text.append(flag ? "\t1" : "\t0");
  }
  return text + '\n';
}

}  // namespace

std::string modelsTable() {
  std::string text(kHeader);
  for (const McuRecord& record : allRows()) text += line(record);
  return text;
}

}  // namespace kvr::catalogue
