#include "shell/model_picker.h"

#include <algorithm>

#include "catalogue/device_tree.h"

namespace kvr::shell {
namespace {

// A page whose tab no longer applies gives way to the first one.
void leaveUnavailable(platform::TabStrip& strip) {
  const auto index = static_cast<std::size_t>(strip.selected());
  if (index < strip.tabs().size() && !strip.tabs()[index].available()) strip.select(0);
}

}  // namespace

ModelPicker::ModelPicker(platform::World world, MainPanel& panel, catalogue::SelectedModel& model)
    : world_(world), panel_(panel), model_(model) {
  panel_.TreeViewDevice.onClick = [this] { treeClicked(); };
  panel_.Command3.onClick = [this] { showDeviceTree(); };
}

void ModelPicker::buildDeviceTree() {
  std::vector<platform::Tree::Node> nodes;
  const auto series = catalogue::deviceTree();
  for (const auto& node : series) nodes.push_back({std::string(node.key), {}, std::string(node.label)});
  for (const auto& node : series)
    for (const auto* record : node.models)
      nodes.push_back({std::string(record->name), std::string(node.key), std::string(record->name)});
  panel_.TreeViewDevice.setNodes(std::move(nodes));
  panel_.TreeViewDevice.setVisible(false);
}

void ModelPicker::showDeviceTree() {
  if (!panel_.txtDevice.enabled()) return;
  panel_.TreeViewDevice.setVisible(true);
  panel_.TreeViewDevice.setFocus();
}

void ModelPicker::hideDeviceTree() {
  panel_.TreeViewDevice.setVisible(false);
}

void ModelPicker::treeClicked() {
  const std::string key = panel_.TreeViewDevice.selectedKey();
  if (key.empty() || key.starts_with(catalogue::kSeriesKeyPrefix)) {
    // The selected node is what the next start begins with; a look into a series must not cost the operator the model.
    panel_.TreeViewDevice.selectKey(pickedName_);
    return;
  }
  panel_.txtDevice.setText(key);
  picked();
  hideDeviceTree();
  applyDevice();
  panel_.txtDevice.setFocus();
}

std::string ModelPicker::applyDevice() {
  const std::string name = panel_.txtDevice.trimmed();
  const auto* record = catalogue::findByName(name);
  if (!record) {
    world_.dialogs.message("KVR-ISP", "Can not find the MCU type: " + panel_.txtDevice.text());
    return {};
  }
  apply(*record);
  return name;
}

bool ModelPicker::tryApply(const std::string& name) {
  const auto* record = catalogue::findByName(name);
  if (!record) return false;
  panel_.txtDevice.setText(name);
  apply(*record);
  return true;
}

void ModelPicker::apply(const catalogue::McuRecord& record) {
  model_ = catalogue::describeModel(record);
  // A model without a node leaves the tree where it was: the stored choice stays one that can be picked again.
  const auto& nodes = panel_.TreeViewDevice.nodes();
  if (std::any_of(nodes.begin(), nodes.end(), [&](const auto& node) { return node.key == record.name; })) {
    pickedName_ = model_.name();
    panel_.TreeViewDevice.selectKey(pickedName_);
  }
  captionTabs();
  applied();
}

void ModelPicker::captionTabs() {
  const auto either = [&](const char* caption) { return model_.traits().extraPages ? caption : "_no_"; };
  panel_.TabStrip1.setCaption("ISP_DEMO", either("ISP DEMO"));
  panel_.TabStrip1.setCaption("TJXZ", either("Off-Line-ISP"));
  panel_.TabStrip2.setCaption("Debug1", either("Debug_SFR"));
  panel_.TabStrip2.setCaption("Debug2", either("Debug_xdata"));
  panel_.TabStrip2.setCaption("Debug_COM", "COM Tool");
  panel_.TabStrip2.setCaption("EEPROM_File", catalogue::hasDataFile(model_.record) ? "EEPROM File Buffer" : "_no_");
  leaveUnavailable(panel_.TabStrip1);
  leaveUnavailable(panel_.TabStrip2);
}

}  // namespace kvr::shell
