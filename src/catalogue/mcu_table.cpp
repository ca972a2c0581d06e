// The rows of all families as one table, and the look-ups in it.
#include <algorithm>
#include <array>

#include "catalogue/family_rows.h"
#include "catalogue/mcu_record.h"
#include "catalogue/rows_alder_to_cedar.h"
#include "catalogue/rows_elm_fir.h"
#include "catalogue/rows_gum_hazel.h"
#include "catalogue/rows_ivy.h"
#include "catalogue/rows_juniper_kauri.h"
#include "catalogue/rows_larch.h"
#include "catalogue/rows_maple_nutmeg_oak.h"
#include "catalogue/rows_pine_quince.h"
#include "catalogue/rows_sumac_rowan.h"

namespace kvr::catalogue {
namespace {

template <std::size_t... Sizes>
constexpr auto joined(const McuRecord (&... tables)[Sizes]) {
  std::array<McuRecord, (Sizes + ...)> all{};
  std::size_t at = 0;
  const auto append = [&](std::span<const McuRecord> table) {
    for (const McuRecord& record : table) all[at++] = record;
  };
  (append(tables), ...);
  return all;
}

constexpr auto kRows = joined(rows::kAlder, rows::kBirch, rows::kCedar, rows::kElm, rows::kFir, rows::kGum,
                              rows::kHazel, rows::kIvy, rows::kJuniper, rows::kKauri, rows::kLarch, rows::kMaple,
                              rows::kNutmeg, rows::kOak, rows::kPine, rows::kQuince, rows::kSumac, rows::kRowan);

// A key and the place of its row. Sorted by both, so the first entry of a key is the row that is meant.
struct Entry {
  std::string_view key;
  std::uint16_t place = 0;
};

constexpr bool before(const Entry& a, const Entry& b) {
  return a.key != b.key ? a.key < b.key : a.place < b.place;
}

constexpr auto kByName = [] {
  std::array<Entry, kRows.size()> entries{};
  for (std::size_t i = 0; i < kRows.size(); ++i) entries[i] = {kRows[i].name, static_cast<std::uint16_t>(i)};
  std::sort(entries.begin(), entries.end(), before);
  return entries;
}();

constexpr CodeLookup lookupOf(const McuRecord& record) {
  return rows::kFamilies[rows::placeOf(record.family)].codes;
}

constexpr bool foundByFourDigits(const McuRecord& record) {
  return lookupOf(record) == CodeLookup::FourDigits;
}

constexpr std::size_t kCodeCount = [] {
  std::size_t count = 0;
  for (const McuRecord& record : kRows) {
    if (foundByFourDigits(record)) count += record.altCode.empty() ? 1 : 2;
  }
  return count;
}();

constexpr auto kByCode = [] {
  std::array<Entry, kCodeCount> entries{};
  std::size_t at = 0;
  for (std::size_t i = 0; i < kRows.size(); ++i) {
    if (!foundByFourDigits(kRows[i])) continue;
    entries[at++] = {kRows[i].code, static_cast<std::uint16_t>(i)};
    if (!kRows[i].altCode.empty()) entries[at++] = {kRows[i].altCode, static_cast<std::uint16_t>(i)};
  }
  std::sort(entries.begin(), entries.end(), before);
  return entries;
}();

const McuRecord* firstOf(std::span<const Entry> index, std::string_view key) {
  const auto found = std::lower_bound(index.begin(), index.end(), Entry{key, 0}, before);
  return found != index.end() && found->key == key ? &kRows[found->place] : nullptr;
}

std::string_view withoutBlanks(std::string_view text) {
  const auto first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

}  // namespace

std::span<const McuRecord> allRows() {
  return kRows;
}

const McuRecord* findByName(std::string_view name) {
  return firstOf(kByName, name);
}

const McuRecord* findModelByCode(std::string_view code) {
  code = withoutBlanks(code);
  if (code.size() != 2) return firstOf(kByCode, code);
  const auto found = std::find_if(kRows.begin(), kRows.end(), [&](const McuRecord& r) {
    return lookupOf(r) == CodeLookup::TwoDigits && r.code == code;
  });
  return found != kRows.end() ? &*found : nullptr;
}

}  // namespace kvr::catalogue
