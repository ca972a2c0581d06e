// The register monitor: a firmware on the chip dumps its registers and memory into the terminal's byte stream; this
// finds the dumps, answers the firmware and shows what they hold. Nothing is sent unless a frame has come, or the
// user presses "Continue".
#pragma once

#include <array>
#include <functional>
#include <span>

#include "catalogue/selected_model.h"
#include "monitor/dump_record.h"
#include "monitor/frame_search.h"
#include "monitor/monitor_panel.h"
#include "platform/event_loop.h"
#include "platform/ui_lock.h"

namespace kvr::monitor {

class MonitorRoom {
 public:
  static constexpr int kMaxRequests = 3;  // for one frame that does not come, 1 s apart
  static constexpr platform::Millis kFrameTimeout{1000};

  MonitorRoom(platform::EventLoop& loop, MonitorPanel& panel, const catalogue::SelectedModel& model,
              platform::UiLock& lock);

  // Writes an answer to the open port; nothing when the terminal does not hold it.
  std::function<void(std::span<const std::uint8_t>)> write;
  // Opens the terminal's port if it is closed, then writes and counts the bytes as a send.
  std::function<void(std::span<const std::uint8_t>)> openAndSend;

  // Every chunk that the terminal receives, in order.
  void receive(std::span<const std::uint8_t> bytes);
  // The terminal's port was closed, or opened anew at another baud: a frame that has begun will not end.
  void portClosed();
  // A model was selected: the register list of its family; a family without a table leaves the list as it is.
  void listRegisters();
  // All lists as at the start, without values; what the Clear buttons of the two pages do.
  void clearLists();

 private:
  void askAgain();
  void answer(Answer answer);
  void show(const Frame& frame);
  void showSfrRecord(const DumpRecord& record);
  void showRamRecord(const DumpRecord& record);
  void showXdataRecord(const DumpRecord& record);
  void showWindowRecord(const DumpRecord& record);
  void fillWindowRows(std::uint16_t address);
  void applyLock();

  MonitorPanel& panel_;
  const catalogue::SelectedModel& model_;
  platform::UiLock& lock_;
  platform::Timer frameTimer_;
  platform::Signal::Token lockToken_;
  FrameSearch search_;
  int retriesLeft_ = 0;
  catalogue::RegisterList list_ = catalogue::RegisterList::None;
  std::uint16_t windowAddress_ = 0;  // of the first row of lst_debug4
  std::array<Cell, 256> sfrValues_{};
  std::array<Cell, 256> ramValues_{};
  std::array<Cell, 1024> xdataValues_{};
  std::array<Cell, 512> xdataWindow_{};
};

}  // namespace kvr::monitor
