#include <algorithm>
#include <numeric>

#include "cli/job_source.h"
#include "platform/text.h"

namespace kvr::cli {
namespace {

constexpr std::size_t kShown = 3;

// How many letters must be changed, put in or taken out to make one of the other.
std::size_t distance(const std::string& a, const std::string& b) {
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 1; i <= a.size(); ++i) {
    std::size_t before = row[0];
    row[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t kept = before + (a[i - 1] == b[j - 1] ? 0 : 1);
      before = row[j];
      row[j] = std::min({kept, row[j] + 1, row[j - 1] + 1});
    }
  }
  return row.back();
}

}  // namespace

std::string nearest(const std::string& wanted, const std::vector<std::string>& names) {
  if (wanted.size() > 100) return {};
  std::vector<std::pair<std::size_t, std::string>> found;
  for (const std::string& name : names) {
    const std::size_t changes = distance(platform::upper(wanted), platform::upper(name));
    if (changes <= std::max<std::size_t>(2, wanted.size() / 3)) found.emplace_back(changes, name);
  }
  std::sort(found.begin(), found.end());
  found.resize(std::min(found.size(), kShown));
  std::string text;
  for (std::size_t i = 0; i < found.size(); ++i)
    text += (i == 0 ? "" : i + 1 == found.size() ? " or " : ", ") + found[i].second;
  return text;
}

}  // namespace kvr::cli
