// The receive side of the terminal: from bytes at the port to text in the pane. Reception only counts and copies into
// the ring; 35 ms later one tick turns what lies there into text. Neither ever runs the event loop in between, and the
// work of a tick is bounded by the ring.
#pragma once

#include <functional>
#include <span>
#include <string>

#include "comtool/rx_ring.h"
#include "comtool/text_decoder.h"
#include "comtool/time_stamps.h"
#include "comtool/tool_panel.h"
#include "platform/world.h"

namespace kvr::comtool {

class ReceiveArea {
 public:
  static constexpr std::size_t kDisplayLimit = 230000;  // characters in `texReceive`
  static constexpr platform::Millis kDisplayDelay{35};
  static constexpr platform::Millis kHoldTime{500};  // for the rest of a character that has begun
  static constexpr platform::Millis kBurstGap{100};  // silence before a new burst
  static constexpr const char* kTooLong = "The display text is too long, please click the Clear Receive button.";

  ReceiveArea(platform::World world, ToolPanel& panel);

  // The pane is full and may not drop its oldest text: the port is to be closed and all that sends or runs to be
  // stopped.
  std::function<void()> onOverflow;

  // Bytes from the port, in order.
  void receive(std::span<const std::uint8_t> bytes);
  void showReceived();
  // The pane's Clear button; the counters stay.
  void clearPane();
  void replaceText(std::string_view text);  // ended lines, in place of what the pane shows
  void clearRing() { ring_.clear(); }
  // Nothing more will come for now: what is held back shows.
  void portClosed();

  const RxRing& rxRing() const { return ring_; }
  void clearCount();

 private:
  std::string takeText();
  void show(const std::string& text);
  void showCutTo(std::size_t room, const std::string& text);
  void showHeld();
  void showCount();
  bool hexadecimal() const { return panel_.optReceiveHex[1].value(); }

  platform::World world_;
  ToolPanel& panel_;
  RxRing ring_;
  TextDecoder decoder_;
  TimeStamps stamps_;
  std::uint32_t rxTotal_ = 0;
  std::string arrivedAt_;  // when the first byte of the coming tick was read
  bool newBurst_ = true;
  platform::Instant lastArrival_{0};
  platform::Timer timerDebugDisplay_;
  platform::Timer holdTimer_;
};

}  // namespace kvr::comtool
