// The log of what comes from the line: its box, its file, what it says of itself. It goes on while the pane is cleared.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "comtool/rolling_log.h"
#include "comtool/tool_panel.h"
#include "platform/ui_lock.h"
#include "platform/world.h"

namespace kvr::comtool {

class LogArea {
 public:
  static constexpr platform::Millis kFlushEvery{1000};

  LogArea(platform::World world, ToolPanel& panel, platform::UiLock& lock);
  ~LogArea();
  LogArea(const LogArea&) = delete;
  LogArea& operator=(const LogArea&) = delete;

  bool takesBytes() const { return log_.on() && panel_.comb_LogForm.listIndex() != kAsShown; }
  bool takesText() const { return log_.on() && panel_.comb_LogForm.listIndex() == kAsShown; }
  void bytesCame(std::span<const std::uint8_t> bytes);  // as they came from the line
  void textCame(std::string_view text);                 // as the pane shows it

 private:
  static constexpr int kAsShown = 1;
  void startOrStop();
  void start();
  void chooseFile();
  void tick();
  void keep(const platform::FileResult& result);
  void showState();
  void applyLock(const platform::UiLock& lock);

  platform::World world_;
  ToolPanel& panel_;
  RollingLog log_;
  std::string failure_;  // to be told
  platform::Timer timer_;
  platform::Signal::Token lockToken_;
};

}  // namespace kvr::comtool
