#include "images/edit_history.h"

#include <utility>

namespace kvr::images {

void EditHistory::edit(ImageBuffer& buffer, std::int32_t address, std::uint8_t value, bool lowDigit) {
  if (basis_ != buffer.basis()) *this = {};
  basis_ = buffer.basis();
  const Step step{address, buffer.at(address), value};
  const bool joins = lowDigit && begun_ == address;
  begun_.reset();
  buffer.edit(address, {&value, 1});
  if (step.before == value) return;
  if (!lowDigit) begun_ = address;
  keep(step, joins);
}

void EditHistory::keep(const Step& step, bool joins) {
  undone_.clear();
  if (joins) {
    done_.back().after = step.after;
    return;
  }
  done_.push_back(step);
  if (done_.size() > kMostSteps) done_.pop_front();
}

std::optional<std::int32_t> EditHistory::step(ImageBuffer& buffer, bool again) {
  begun_.reset();
  while (offers(buffer, again)) {
    const Step step = again ? undone_.back() : done_.back();
    again ? undone_.pop_back() : done_.pop_back();
    const auto [from, to] = again ? std::pair(step.before, step.after) : std::pair(step.after, step.before);
    if (buffer.at(step.address) != from) continue;
    again ? done_.push_back(step) : undone_.push_back(step);
    buffer.edit(step.address, {&to, 1});
    return step.address;
  }
  return {};
}

bool EditHistory::offers(const ImageBuffer& buffer, bool again) const {
  return basis_ == buffer.basis() && !(again ? undone_.empty() : done_.empty());
}

}  // namespace kvr::images
