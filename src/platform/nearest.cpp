#include "platform/nearest.h"

#include <algorithm>
#include <numeric>

#include "platform/text.h"

namespace kvr::platform {
namespace {

// How many letters must be changed, inserted or taken away to make one of the other.
std::size_t editsBetween(std::string_view a, std::string_view b) {
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 0; i < a.size(); ++i) {
    std::size_t diagonal = row[0];
    row[0] = i + 1;
    for (std::size_t j = 0; j < b.size(); ++j) {
      const std::size_t change = diagonal + (a[i] == b[j] ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({change, row[j] + 1, row[j + 1] + 1});
    }
  }
  return row.back();
}

constexpr std::size_t kNothingAlike = 1000;
constexpr std::size_t kLongestText = 64;  // no name is near this long

// A name that contains the text beats every one that needs a change.
std::size_t distance(std::string_view text, std::string_view name) {
  if (!text.empty() && name.find(text) != std::string_view::npos) return name.size() - text.size() < 24 ? 1 : 2;
  const std::size_t edits = editsBetween(text, name);
  return edits <= std::max<std::size_t>(2, name.size() / 2) ? edits + 1 : kNothingAlike;
}

}  // namespace

std::vector<std::string> nearestNames(std::string_view text, std::span<const std::string> names, std::size_t most) {
  const std::string wanted = upper(trim(text.substr(0, kLongestText)));
  std::vector<std::pair<std::size_t, std::string>> found;
  for (const std::string& name : names) {
    const std::size_t far = distance(wanted, upper(name));
    if (far < kNothingAlike) found.emplace_back(far, name);
  }
  std::stable_sort(found.begin(), found.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
  std::vector<std::string> nearest;
  for (auto& [far, name] : found)
    if (nearest.size() < most && std::find(nearest.begin(), nearest.end(), name) == nearest.end())
      nearest.push_back(std::move(name));
  return nearest;
}

std::string joinedByOr(std::span<const std::string> names) {
  std::string text;
  for (std::size_t i = 0; i < names.size(); ++i)
    text += (i == 0 ? "" : i + 1 == names.size() ? " or " : ", ") + names[i];
  return text;
}

}  // namespace kvr::platform
