// The texts that the send line has sent, for calling them back.
#pragma once

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace kvr::comtool {

class SendHistory {
 public:
  static constexpr std::size_t kKept = 100;

  // A text was sent. Sent before, it becomes the newest one; empty ones are not kept.
  void add(const std::string& text) {
    if (!text.empty()) {
      std::erase(texts_, text);
      texts_.push_back(text);
      if (texts_.size() > kKept) texts_.erase(texts_.begin());
    }
    at_ = texts_.size();
  }
  // The one before; `shown`, what the line holds, comes back after the newest. Nothing: there is none.
  std::optional<std::string> older(const std::string& shown) {
    if (at_ == texts_.size()) draft_ = shown;
    if (at_ > 0 && at_ == texts_.size() && texts_.back() == shown) --at_;
    if (at_ == 0) return std::nullopt;
    return texts_[--at_];
  }
  std::optional<std::string> newer() {
    if (at_ >= texts_.size()) return std::nullopt;
    return ++at_ == texts_.size() ? draft_ : texts_[at_];
  }

 private:
  std::vector<std::string> texts_;
  std::size_t at_ = 0;  // the text that the line shows; one past the newest: the user's own
  std::string draft_;
};

}  // namespace kvr::comtool
