#include "images/comparison.h"

#include <algorithm>
#include <utility>

#include "platform/text.h"

namespace kvr::images {

using catalogue::AddressRange;
using platform::hexText;

void Comparison::begin(std::string name, FileLayer other) {
  name_ = std::move(name);
  other_ = std::move(other);
}

bool Comparison::has(std::int32_t address) const {
  const auto at = static_cast<std::size_t>(address);
  return address >= 0 && at < other_.written.size() && other_.written[at] != 0;
}

void Comparison::update(const ImageBuffer& image, AddressRange shown) {
  runs_.clear();
  outside_ = 0;
  for (std::int32_t i = 0; i < image.size(); ++i) {
    if (!shown.holds(i)) {
      outside_ += has(i) ? 1 : 0;
      continue;
    }
    const bool both = has(i) && !image.gap(i);
    if (both ? other_.bytes[static_cast<std::size_t>(i)] == image.at(i) : has(i) != image.gap(i)) continue;
    if (!runs_.empty() && runs_.back().last == i - 1)
      runs_.back().last = i;
    else
      runs_.push_back({i, i});
  }
}

bool Comparison::differs(std::int32_t address) const {
  const auto run = std::partition_point(runs_.begin(), runs_.end(), [&](const auto& r) { return r.last < address; });
  return run != runs_.end() && run->holds(address);
}

std::optional<AddressRange> Comparison::next(std::int32_t address, bool forward) const {
  if (runs_.empty()) return {};
  if (forward) {
    const auto run =
        std::partition_point(runs_.begin(), runs_.end(), [&](const auto& r) { return r.first <= address; });
    return run == runs_.end() ? runs_.front() : *run;
  }
  const auto run = std::partition_point(runs_.begin(), runs_.end(), [&](const auto& r) { return r.last < address; });
  return run == runs_.begin() ? runs_.back() : *std::prev(run);
}

std::string Comparison::byteText(std::int32_t address) const {
  const std::string at = hexText(static_cast<std::uint32_t>(address), 6);
  if (!has(address)) return "; no byte at " + at;
  return "; " + hexText(other_.bytes[static_cast<std::size_t>(address)], 2) + " at " + at;
}

std::string Comparison::text(std::int32_t address) const {
  if (!on()) return {};
  std::string text = name_ + ": ";
  if (runs_.size() == 1)
    text += "1 difference";
  else
    text += (runs_.empty() ? "no" : std::to_string(runs_.size())) + " differences";
  if (differs(address)) text += byteText(address);
  if (outside_ > 0) text += "; " + std::to_string(outside_) + " bytes of it lie outside this image";
  return text;
}

}  // namespace kvr::images
