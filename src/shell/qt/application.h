// The program put together for the real machine: platform, form, window.
#pragma once

#include <memory>
#include <string>

#include "platform/qt/iconv_codec.h"
#include "platform/qt/ports.h"
#include "platform/qt/qt_clock.h"
#include "platform/qt/qt_files.h"
#include "platform/qt/qt_loop.h"
#include "platform/qt/qt_serial_link.h"
#include "platform/qt/qt_store.h"
#include "records/qt/qt_record_desk.h"
#include "shell/qt/main_window.h"
#include "shell/qt/qt_dialogs.h"
#include "shell/qt/qt_handbook.h"

namespace kvr::window {

class Application {
 public:
  // `settingsPath`: empty for the user's own settings.
  explicit Application(const std::string& settingsPath = {});
  ~Application();

  // Shows the window, and opens `file` when one is named. Returns at once; the window lives in Qt's loop.
  void show(const std::string& file = {});
  std::function<void()> onGone;  // the window has closed and nothing is under way

  platform::QtLoop loop;
  platform::QtStore store;
  platform::Ports ports;
  platform::QtSerialLink link;
  QtDialogs dialogs;
  QtHandbook handbook;
  platform::QtFiles files;
  platform::QtClock clock;
  platform::IconvCodec codec;
  records::QtRecordDesk records;
  shell::MainForm form;
  PortWatch portWatch;
  std::unique_ptr<MainWindow> window;

 private:
  shell::BatchRoom::Place placeOf(int number);
};

}  // namespace kvr::window
