// Project files: model, options, counters and both images in one file that an operator opens before programming.
#pragma once

#include <functional>
#include <string>

#include "catalogue/selected_model.h"
#include "images/image_room.h"
#include "options/options_room.h"
#include "platform/activity.h"
#include "platform/text_codec.h"
#include "platform/ui_lock.h"
#include "platform/world.h"
#include "project/project_panel.h"
#include "project/project_plan.h"

namespace kvr::project {

class ProjectRoom {
 public:
  // `controls`: every control of the window; the lines of every family find theirs by name and index.
  ProjectRoom(platform::World& world, const platform::TextCodec& codec, const platform::ControlRegistry& controls,
              const catalogue::SelectedModel& selected, images::ImageRoom& images, options::OptionsRoom& options,
              platform::UiLock& lock, platform::Activity& activity);

  ProjectPanel panel;

  // Puts the model into the model box and its label ("MCU Type: " and the name) and applies it, option panel included.
  // False: it could not be applied. Must be connected.
  std::function<bool(const std::string& model)> applyModel;

  void comSaveBatchFile_Click();
  void comOpenBatchFile_Click();
  void comLockOptions_Click();
  void comUnlockOptions_Click();
  void Command1_Click();

  // Opens a project, or says why not. An unknown model, a version of before 1.2 and a file cut short ahead of its code
  // change nothing. Wrong sums are found when model and options stand already: then the image that differs is not
  // valid. Nothing while a run goes on. False: the images are not the project's.
  bool openProject(const std::string& path);

  // A project stands: the options are locked again whenever a run ends, until the operator unlocks them.

 private:
  void applyLock();
  std::string projectFolder();
  platform::Bytes projectBytes() const;
  void say(const std::string& text);
  bool refuse(const std::string& text);
  platform::Control* controlOf(const options::OptionRow& row) const;
  void setControls(const Header& lines);
  bool takeCode(const HexSection& code);
  bool takeData(const HexSection& data);
  void startCounters();

  platform::World& world_;
  const platform::TextCodec& codec_;
  const platform::ControlRegistry& controls_;
  const catalogue::SelectedModel& selected_;
  images::ImageRoom& images_;
  options::OptionsRoom& options_;
  platform::UiLock& lock_;
  platform::Activity& activity_;
};

}  // namespace kvr::project
