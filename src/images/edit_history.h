// What the user typed into an image, to be taken back and done again. A byte is one step, also when both of its digits
// were typed. Another file, or anything else that is no edit, ends the history: its steps belong to bytes that have
// gone.
#pragma once

#include <deque>
#include <optional>
#include <vector>

#include "images/image_buffer.h"

namespace kvr::images {

class EditHistory {
 public:
  static constexpr std::size_t kMostSteps = 10000;  // the oldest ones go

  // Puts the byte into the buffer. `lowDigit`: its second digit was typed.
  void edit(ImageBuffer& buffer, std::int32_t address, std::uint8_t value, bool lowDigit);
  // The address of the byte that was taken back (`again`: done again); nothing: there is none. Bytes that somebody
  // else has written since, such as a serial number, are passed over.
  std::optional<std::int32_t> step(ImageBuffer& buffer, bool again);
  bool offers(const ImageBuffer& buffer, bool again) const;

 private:
  struct Step {
    std::int32_t address = 0;
    std::uint8_t before = 0;
    std::uint8_t after = 0;
  };
  void keep(const Step& step, bool joins);
  std::deque<Step> done_;
  std::vector<Step> undone_;
  std::optional<std::int32_t> begun_;  // the byte whose first digit was typed last
  std::uint64_t basis_ = 0;
};

}  // namespace kvr::images
