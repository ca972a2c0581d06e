// A pasted text on its way out: a value that says what goes next and how long to wait after it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "platform/event_loop.h"

namespace kvr::comtool {

class PasteQueue {
 public:
  struct Pace {
    platform::Millis perCharacter{0};
    platform::Millis perLine{0};
  };
  struct Step {
    std::string_view text;      // whole characters; lives as long as the queue is not started anew
    platform::Millis pause{0};  // after it
  };

  // Line ends of any kind become `lineEnd`; empty: they stay as they are.
  void start(std::string_view text, std::string_view lineEnd, Pace pace);
  void cancel() { *this = {}; }
  // What goes out now: at most `room` bytes (but always one character), up to the next place that asks for a pause.
  Step next(std::size_t room);

  bool active() const { return at_ < text_.size(); }
  std::size_t done() const { return at_; }  // bytes of the text
  std::size_t size() const { return text_.size(); }

 private:
  std::string text_;
  std::size_t at_ = 0;
  Pace pace_;
};

}  // namespace kvr::comtool
