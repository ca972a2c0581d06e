// The main form: the composition root without a toolkit. It builds every room, connects their callbacks, and carries
// the window's own behaviour: start, tabs, shrinking, the two-step close. A window binds widgets to its panels; tests
// drive the panels directly.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "catalogue/selected_model.h"
#include "comtool/tool_room.h"
#include "download/download_panel.h"
#include "download/download_room.h"
#include "download/results_room.h"
#include "engine/port_lease.h"
#include "engine/run_tracer.h"
#include "engine/tracing_view.h"
#include "images/image_room.h"
#include "monitor/monitor_room.h"
#include "offline/offline_panel.h"
#include "offline/offline_room.h"
#include "options/option_panel.h"
#include "options/options_room.h"
#include "platform/activity.h"
#include "platform/guarded_dialogs.h"
#include "platform/text_codec.h"
#include "platform/ui_lock.h"
#include "platform/world.h"
#include "project/project_room.h"
#include "shell/areas_room.h"
#include "shell/batch_room.h"
#include "shell/main_panel.h"
#include "shell/model_picker.h"
#include "shell/notice_room.h"
#include "shell/port_line_view.h"
#include "shell/settings.h"
#include "userpath/demo_room.h"
#include "userpath/trigger_room.h"
#include "userpath/userpath_panel.h"

namespace kvr::shell {

class MainForm {
 public:
  static constexpr const char* kCaption = "KVR-ISP.EXE  Version:" KVR_VERSION;

  MainForm(platform::World services, const platform::TextCodec& codec, records::RecordDesk& records);
  MainForm(const MainForm&) = delete;
  MainForm& operator=(const MainForm&) = delete;

  // The start, in its order; once, before anything else.
  void load();

  // A request to close. True: not yet; the run under way was asked to end and `onUnload` comes when it has. False: go
  // now.
  bool queryUnload();
  // The last step: the port is closed. Nothing runs any more when this is called.
  void unload();
  std::function<void()> onUnload;  // the window is to go now

  // A file was dropped onto the window or handed over by the desktop: a project is opened, an image goes to the data
  // buffer while that buffer's page is shown and to the code buffer otherwise. Nothing happens while a sequence runs or
  // while the button for such a file is disabled.
  void openDropped(const std::string& path);

  // Width of the terminal's string pane, twips, at the end of a move of the splitter; saved.
  void splitterMoved(int tabWidthTwips);

  WindowPlace windowPlace() const { return settings.windowPlace(); }
  void saveWindowPlace(const WindowPlace& place);

  // --- State, in the order in which it is built. ---
  engine::RunTracer tracer;  // the port of everything below is the one of the tracer
  platform::Activity activity;
  platform::GuardedDialogs dialogs;  // every box of the window is under the guard
  platform::World world;
  platform::ControlRegistry registry;
  catalogue::SelectedModel model;
  platform::UiLock lock;

  // --- Panels and rooms. ---
  MainPanel main;
  download::DownloadPanel download;
  options::OptionPanel options;
  comtool::ToolPanel tool;
  monitor::MonitorPanel monitor;
  offline::OfflinePanel offline;
  userpath::UserPathPanel userpath;
  images::ImageRoom images;
  options::OptionsRoom optionsRoom;

  engine::RunStop stop;
  engine::PortLease lease;
  download::MainControls controls;
  download::DisplayPanel display;
  engine::TracingView tracedView;
  download::TraceRoom traces;
  download::ResultsRoom results;
  download::RunRoom runs;
  download::JobPanels jobPanels;
  BatchRoom batches;
  download::DownloadRoom downloads;
  project::ProjectRoom project;
  offline::OfflineRoom offlineRoom;
  comtool::ToolRoom comTool;
  monitor::MonitorRoom sfrMonitor;
  userpath::DemoRoom demo;
  userpath::TriggerRoom trigger;
  ModelPicker picker;
  Settings settings;
  AreasRoom areas;
  NoticeRoom notices;
  PortLine portLine;

  // Which device and adapter a port's number means; without it a record has the number alone.
  std::function<BatchRoom::Place(int number)> portPlace;

  // The window is narrowed to its working pages ("Resume" brings the left column back).
  void shrinkOrResume();
  bool shrunk() const { return main.comMastWindow.caption() == "Resume"; }
  platform::Signal shrinkChanged;
  platform::Signal lastRunAsked;  // the user wants to see the picture of the last run

 private:
  void registerControls();
  void connectRooms();
  void connectEngine();
  void connectFiles();
  void connectTerminal();
  void nameBatchLog();
  void selectSeenModel();
  void logRun(const download::RunRecord& record);
  void connectButtons();
  void applyLock();
  void lockPowerLine();
  void showOptionNote();
  void applyModel();
  void checkConnections() const;
  void forgetVerdict();
  void timerUnload();

  bool unloaded_ = false;
  std::vector<platform::Signal::Token> tokens_;
  platform::Timer timerUnload_;
};

}  // namespace kvr::shell
