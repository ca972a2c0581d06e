// The stations window put together: settings, adapters, stations, books, window.
#pragma once

#include <memory>
#include <string>

#include "platform/qt/qt_store.h"
#include "stations/adapters.h"
#include "stations/crew.h"
#include "stations/remembered.h"
#include "stations/window/beeps.h"
#include "stations/window/books.h"

namespace kvr::tiles {

class StationsWindow;

class Program {
 public:
  // `settingsPath`: empty for the user's own settings.
  explicit Program(const std::string& settingsPath = {}, std::string command = stations::findCommand());
  ~Program();

  void show(const std::string& project);  // "": that of the last time
  // Puts the line on the disk as it is now. Not empty: why it could not be.
  [[nodiscard]] std::string save();
  void setProject(const std::string& path);
  Books& books();  // made when they are first asked

  platform::QtStore store;
  stations::Adapters adapters{store};
  stations::Crew crew;
  bool beeping = false;
  Beeps beeps;

 private:
  std::unique_ptr<Books> books_;

 public:
  std::unique_ptr<StationsWindow> window;  // goes before all that it shows
};

}  // namespace kvr::tiles
