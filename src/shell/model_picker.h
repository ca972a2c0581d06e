// Choosing the model: the tree over the model box, and applying a name, which brings everything that hangs on the model
// in line. The same applying runs for a picked model, a stored one and one that a project file names.
#pragma once

#include <functional>
#include <string>

#include "catalogue/selected_model.h"
#include "platform/world.h"
#include "shell/main_panel.h"

namespace kvr::shell {

class ModelPicker {
 public:
  ModelPicker(platform::World world, MainPanel& panel, catalogue::SelectedModel& model);

  // A model was picked from the tree, before it is applied; and it has been applied, wherever its name came from. Must
  // be connected.
  std::function<void()> picked;
  std::function<void()> applied;

  void buildDeviceTree();
  void showDeviceTree();
  void hideDeviceTree();
  void treeClicked();  // a node was picked; series nodes only open and close

  // Applies the name that stands in `txtDevice`. Empty: no row bears it, the person was told, nothing else has changed.
  std::string applyDevice();
  // The same without a message box, for callers that word the failure themselves.
  bool tryApply(const std::string& name);

 private:
  void apply(const catalogue::McuRecord& record);
  void captionTabs();
  platform::World world_;
  MainPanel& panel_;
  catalogue::SelectedModel& model_;
  std::string pickedName_;  // the model whose node is selected
};

}  // namespace kvr::shell
