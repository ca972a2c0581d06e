// Project files: model, options, counters and both images in one file that an operator opens before programming.
#pragma once

#include <functional>
#include <string>

#include "catalogue/selected_model.h"
#include "images/image_room.h"
#include "images/recent_files.h"
#include "options/options_room.h"
#include "platform/activity.h"
#include "platform/text_codec.h"
#include "platform/ui_lock.h"
#include "platform/world.h"
#include "project/project_file.h"
#include "project/project_panel.h"

namespace kvr::project {

// What a project keeps, and what keeps it from changing under a run.
struct ProjectContext {
  platform::World& world;
  const platform::TextCodec& codec;
  const platform::ControlRegistry& controls;  // every control: the lines of every family find theirs by name and index
  const catalogue::SelectedModel& selected;
  images::ImageRoom& images;
  options::OptionsRoom& options;
  platform::UiLock& lock;
  platform::Activity& activity;
};

class ProjectRoom {
 public:
  explicit ProjectRoom(const ProjectContext& context);

  ProjectPanel panel;

  // Puts the model into the model box and its label ("MCU Type: " and the name) and applies it, option panel included.
  // False: it could not be applied. Must be connected.
  std::function<bool(const std::string& model)> applyModel;

  // Opens the window of a line with several chips at once, with a project, or "" for that of its last time. Why not;
  // empty: it opens. Nothing happens while it is not connected.
  std::function<std::string(const std::string& project)> openStations;

  // Opens a project, or says why not. True: the code image is now the project's, and nothing but. An unknown model, a
  // version before 1.2 and a file cut short ahead of its code change nothing. Wrong sums are found when model and
  // options have been applied: then the image that differs is not valid. Nothing while a run goes on.
  [[nodiscard]] bool openProject(const std::string& path);

  // Opened or saved.
  const images::RecentFiles& recent() const { return recent_; }

  void lockOptions();
  // Until then a project that is open locks the options again whenever a run ends.
  void unlockOptions();

 private:
  void applyLock();
  void save();
  void chooseAndOpen();
  void showHelp();
  void showStations();
  std::string projectFolder();
  std::string askWhereToSave();
  bool take(const std::string& path);
  void say(const std::string& text);
  bool refuse(const std::string& why);

  ProjectFile fromControls() const;
  void setControls(const ProjectFile& project);
  void takeCode(const ProjectFile& project);
  void takeData(const ProjectFile& project);
  void startCounters();

  void remember(const std::string& path);

  ProjectContext context_;
  images::RecentFiles recent_;
};

}  // namespace kvr::project
