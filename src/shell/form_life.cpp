// How the main form starts and how it ends.

#include <algorithm>

#include "shell/main_form.h"

namespace kvr::shell {
namespace {

constexpr int kLeastTabWidth = 300;  // twips

}  // namespace

void MainForm::load() {
  offline.labTJXZ[3].setVisible(false);
  offline.labTJXZ[3].setEnabled(false);
  offline.combPins.setVisible(false);
  offline.combPins.setEnabled(false);
  images.panel.comComp.setVisible(false);
  images.panel.comComp.setEnabled(false);
  for (std::size_t i = 0; i < offline.che_staple.size(); ++i) offline.che_staple[i].setVisible(false);

  picker.buildDeviceTree();
  main.tabWidth = std::max(settings.frame24Width(), kLeastTabWidth);

  areas.load();
  settings.loadMainSettings();
  main.labKbyte.setCaption({});
  images.counters.forgetArmed();
  images.counters.loadSettings();
  images.counters.followBox(images::ImageKind::Code);
  settings.loadDemoSettings();
  settings.loadToolSettings();
  settings.loadUserCodeSettings();
  optionsRoom
      .showFamilyPanel();  // options start from the model's defaults, whatever the last session left in their boxes
  images.loader.clearBuffers();
  offline.combPins.setListIndex(9);
  lock.set(platform::UiLock::kFree);
  settings.startDone();
  settings.connect();
}

bool MainForm::queryUnload() {
  if (unloaded_) return false;
  const bool first = !activity.closing();
  activity.close();
  stop.request();
  lease.close();
  if (!first && !activity.busy()) return false;
  if (first) timerUnload_.start(platform::Millis(500));
  return true;
}

// Nothing that a sequence owns may go before it has returned: the window waits for it, however long its exit takes.
void MainForm::timerUnload() {
  if (activity.busy()) {
    timerUnload_.start(platform::Millis(20));
    return;
  }
  unload();
}

void MainForm::unload() {
  if (unloaded_) return;
  unloaded_ = true;
  settings.savePending();
  lease.close();
  if (onUnload) onUnload();
}

}  // namespace kvr::shell
