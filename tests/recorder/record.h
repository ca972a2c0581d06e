// What one recorded run left: the bytes of both directions with their times, the message pane, the boxes, the memory of
// the device at the far end and the sign over the window.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "sim/wire_faults.h"

namespace kvr::recorder {

std::uint64_t hashOf(std::string_view text);

class Record {
 public:
  // Times count from here on, the press of the button.
  void begin(sim::Micros at) { begin_ = at; }
  void unit(const sim::Unit& unit);
  void pane(const std::string& text);  // as it is, or as it was before it was cleared
  void box(const std::string& title, const std::string& text);
  void memory(std::string_view what, std::span<const std::uint8_t> bytes);
  void sign(std::string_view name) { sign_ = name; }
  void remark(const std::string& text);  // for people only: not compared

  // Hashes of the whole, of the line, of the pane with the boxes, and of the memory, then the sign; tabs between them.
  std::string hashes() const;
  std::string text() const;
  // The same run as seen by somebody without a clock, for a change that is about time alone.
  Record withoutTimes() const;

 private:
  sim::Micros begin_ = 0;
  std::string line_, pane_, memory_, sign_, remarks_;
};

}  // namespace kvr::recorder
