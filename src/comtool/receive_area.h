// The receive side of the terminal: from bytes at the port to text in the pane and in the log. Reception only counts,
// logs and copies into the ring; 35 ms later one tick turns what lies there into text. Neither ever runs the event loop
// in between, and the work of a tick is bounded by the ring.
#pragma once

#include <deque>
#include <functional>
#include <span>
#include <string>

#include "comtool/escape_filter.h"
#include "comtool/log_area.h"
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

  ReceiveArea(platform::World world, ToolPanel& panel, const platform::TextCodec& codec, LogArea& log);

  // The pane is full and may not drop its oldest text: the port is to be closed and all that sends or runs to be
  // stopped.
  std::function<void()> onOverflow;

  // Bytes from the port, in order.
  void receive(std::span<const std::uint8_t> bytes);
  void showReceived();
  // What was sent, as the pane would show it had it come in.
  void echo(std::span<const std::uint8_t> bytes);
  // A line of the terminal's own, with the time.
  void say(const std::string& words);
  // The pane's Clear button; the counters stay.
  void clearPane();
  void replaceText(std::string_view text);  // ended lines, in place of what the pane shows
  void clearRing();
  // Nothing more will come for now: what is held back shows.
  void portClosed();

  const RxRing& rxRing() const { return ring_; }
  void clearCount();

 private:
  // Bytes of the ring that came together.
  struct Chunk {
    std::size_t bytes = 0;
    std::string stamp;  // when they were read; empty when no stamps are wanted
    bool newBurst = false;
    bool newLine = false;  // in hexadecimal: the line was silent before them
  };

  Chunk chunkNow();
  void keepChunk(Chunk chunk, std::size_t bytes);
  void convert();
  std::string textOf(std::span<const std::uint8_t> bytes, const Chunk& chunk);
  std::string textOf(TextDecoder& decoder, EscapeFilter& filter, std::span<const std::uint8_t> bytes);
  StampMode stampMode() const;
  void take(const std::string& text);
  void showWaiting();
  void show(const std::string& text);
  void showCutTo(std::size_t room, const std::string& text);
  void showHeld();
  void showCount();
  bool hexadecimal() const { return panel_.optReceiveHex[1].value(); }

  platform::World world_;
  ToolPanel& panel_;
  LogArea& log_;
  RxRing ring_;
  std::deque<Chunk> chunks_;  // what the ring holds, in order
  TextDecoder decoder_;
  EscapeFilter filter_;
  TextDecoder echoDecoder_;
  EscapeFilter echoFilter_;
  TimeStamps stamps_;
  std::string waiting_;  // converted and not shown yet
  std::uint32_t rxTotal_ = 0;
  platform::Instant lastArrival_{0};
  platform::Timer timerDebugDisplay_;
  platform::Timer holdTimer_;
};

}  // namespace kvr::comtool
