// The download buttons: makes a job of the window's state at the press, lets a run carry it out, and goes on with the
// next chip when that was asked for.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "download/books_desk.h"
#include "download/display_panel.h"
#include "download/download_panel.h"
#include "download/job_panel.h"
#include "download/power_area.h"
#include "download/results_room.h"
#include "engine/chip_run.h"
#include "images/image_room.h"
#include "options/options_room.h"
#include "platform/activity.h"
#include "platform/device_hold.h"
#include "platform/ui_lock.h"

namespace kvr::download {

// What a room that runs something on the port works with.
struct RunRoom {
  engine::RunServices services;
  engine::RunView& view;
  ResultsRoom& results;
  platform::Activity& activity;
  platform::UiLock& lock;
};

// The port, taken from the terminal or whoever has it, and closed, while a room prepares a run and between two of them.
class PortTaken : private engine::PortHolder {
 public:
  explicit PortTaken(engine::PortLease& lease) : lease_(lease) {
    lease_.hold(*this);
    lease_.close();
  }
  ~PortTaken() override { lease_.release(*this); }
  PortTaken(const PortTaken&) = delete;
  PortTaken& operator=(const PortTaken&) = delete;

 private:
  void bytesWait() override {}
  void portVanished(const platform::PortError&) override {}
  engine::PortLease& lease_;
  platform::DeviceHold device_{lease_.link()};  // a run comes back to the device that it opened
};

class DownloadRoom {
 public:
  DownloadRoom(RunRoom room, platform::Dialogs& dialogs, const JobPanels& panels, DownloadPanel& panel,
               MainControls controls, images::ImageRoom& images, options::OptionsRoom& options, BooksDesk& books);

  void program();            // one chip
  void programRepeatedly();  // one after the other, until a failure or Stop
  void programOnFixedLink();
  void checkChip();  // tells what a chip is and holds, without touching it
  void showPlan();   // tells what a run would do with these choices
  // Stop: the run ends where it waits and lets go of the lock itself.
  void stop();
  // Lowers Max Baud to what the last failure suggests, and does again what failed.
  void tryLowerBaud();

  // The terminal wants the port after a good run. Must be connected, with `takePort`.
  std::function<bool()> wantsPort;
  std::function<void()> takePort;

 private:
  enum class Mode { Once, Repeat, FixedLink };
  void run(Mode mode);
  bool prepare();
  std::string refusal();
  std::string booksRefusal();
  std::string numberInHand() const;
  engine::Outcome round(Mode mode);
  bool settle(const engine::Outcome& outcome);
  void countDown();
  void applyLock();

  RunRoom room_;
  platform::Dialogs& dialogs_;
  JobPanels panels_;
  DownloadPanel& panel_;
  Mode lastMode_ = Mode::Once;
  MainControls controls_;
  images::ImageRoom& images_;
  options::OptionsRoom& options_;
  BooksDesk& books_;
  PowerArea power_;
  platform::Signal::Token lockToken_;
};

}  // namespace kvr::download
