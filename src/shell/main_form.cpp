#include "shell/main_form.h"

#include <algorithm>

#include "userpath/help_texts.h"

namespace kvr::shell {

MainForm::MainForm(platform::World services, const platform::TextCodec& codec, records::RecordDesk& records)
    : tracer(services.loop, services.clock, services.link),
      dialogs(services.dialogs, activity),
      world{services.loop, tracer.link(), dialogs, services.store, services.files, services.clock},
      images(world, model, activity, lock, main.textMsg),
      optionsRoom(world.dialogs, options, model, lock, main.textMsg, main.FrameX[3]),
      lease(world.loop, world.link),
      controls{main.textMsg, main.combCommPort, main.imgOpen_sys, main.ProgressBar1, main.labKbyte},
      display(world.loop, world.dialogs, controls, optionsRoom, download.verdict),
      tracedView(display, tracer.recorder()),
      traces(world, tracer, lock, download, main.textMsg),
      results(world, download, main.textMsg, traces),
      runs{{world.loop, world.clock, lease, stop}, tracedView, results, activity, lock},
      jobPanels{model, download, main.combCommPort, optionsRoom, images},
      batches(records, lock),
      downloads(runs, world.dialogs, jobPanels, download, controls, images, optionsRoom, batches),
      project({world, codec, registry, model, images, optionsRoom, lock, activity}),
      offlineRoom(runs, world.dialogs, jobPanels, images, main.txtDevice, offline),
      comTool({world, lease, activity, lock, tool, {main.combCommPort, main.imgOpen_sys}, codec}),
      sfrMonitor(world.loop, monitor, model, lock),
      demo(runs, jobPanels, images, main.textMsg, userpath),
      trigger(runs, jobPanels, downloads, userpath),
      picker(world, main, model),
      settings(world.loop, world.store, registry),
      areas(main, settings),
      notices(main, world.dialogs, world.clock),
      portLine(main, activity),
      timerUnload_(world.loop, [this] { timerUnload(); }) {
  registerControls();
  connectRooms();
  connectEngine();
  connectFiles();
  connectTerminal();
  connectButtons();
  checkConnections();
}

void MainForm::registerControls() {
  main.addTo(registry);
  download.addTo(registry);
  options.addTo(registry);
  tool.addTo(registry);
  monitor.addTo(registry);
  offline.addTo(registry);
  userpath.addTo(registry);
  images.panel.addTo(registry);
  project.panel.addTo(registry);
  batches.panel.addTo(registry);
}

void MainForm::connectRooms() {
  picker.picked = [this] { images.loader.clearBuffers(); };
  picker.applied = [this] { applyModel(); };
  optionsRoom.layoutChanged.connect([this] { showOptionNote(); });
  settings.hooks.modelSelected = [this] { picker.treeClicked(); };
  settings.hooks.rangeShown = [this] { images.showModel(); };
  settings.hooks.notSaved = [this](const std::string& why) {
    main.textMsg.appendLine("The settings could not be saved: " + why);
    notices.say("The settings could not be saved: " + why);
  };
  download.cobPowerLine.changed.connect([this] { lockPowerLine(); });
  tokens_ = {lock.changed.watch([this] { applyLock(); }),
             images.state.CodeBuffer.changed.watch([this] { forgetVerdict(); }),
             images.state.EepromBuffer.changed.watch([this] { forgetVerdict(); })};
}

// The line that feeds the target is no toy of the terminal.
void MainForm::lockPowerLine() {
  const auto line = download::readPower(download).line;
  tool.che_DTR.setEnabled(line != platform::ModemLine::Dtr);
  tool.che_RTS.setEnabled(line != platform::ModemLine::Rts);
}

// What follows from a model that has just been applied, in every room.
void MainForm::applyModel() {
  images.showModel();
  images.setDataFileControls(false);
  images.panel.cheData_Auto_Increase.setValue(false);
  sfrMonitor.listRegisters();
  // A project may be opened, and with it another model chosen, while the options are locked.
  if (catalogue::hasDataFile(model.record)) images.setDataFileControls(lock.free());
  optionsRoom.clearLockLabels();
  main.Label2[6].setCaption({});  // the model of a project that was open before
  forgetVerdict();
  settings.requestSave();
  optionsRoom.showFamilyPanel();
}

// The sign speaks of what is selected and loaded. A serial number that a run puts into the image changes neither.
void MainForm::forgetVerdict() {
  if (!lock.busy()) results.forget();
}

void MainForm::connectButtons() {
  main.comMastWindow.onClick = [this] { shrinkOrResume(); };
  download.comLastRun.onClick = [this] { lastRunAsked.emit(); };
  download.comSelectSeen.onClick = [this] { selectSeenModel(); };
  main.cheBatchLog.onClick = [this] { nameBatchLog(); };
  main.comHelp[0].onClick = [this] { world.dialogs.help(userpath::kTriggerHelpTitle, userpath::triggerHelpText()); };
  main.comHelp[1].onClick = [this] { world.dialogs.help(userpath::kHardwareHelpTitle, userpath::hardwareHelpText()); };
}

// As from the tree. A chip that is out of production has no node there.
void MainForm::selectSeenModel() {
  const std::string name = results.remedy().model;
  main.TreeViewDevice.userPick(name);
  if (model.name() == name) return;
  images.loader.clearBuffers();
  if (!picker.tryApply(name)) main.txtDevice.setFocus();
}

// A log that is asked for without a name gets one, for the user to change.
void MainForm::nameBatchLog() {
  if (main.cheBatchLog.value() && main.txtBatchLog.trimmed().empty())
    main.txtBatchLog.setText(world.files.programFolder() + "/KVR-ISP_batch.csv");
}

// Every room enables its own controls; these are the main form's.
void MainForm::applyLock() {
  const bool free = lock.free();
  main.txtDevice.setEnabled(free);
  main.Command3.setEnabled(free);
  main.TreeViewDevice.setEnabled(free);
  if (!free) picker.hideDeviceTree();
  main.comMastWindow.setEnabled(free);
  if (lock.busy()) main.textMsg.setFocus();
}

void MainForm::showOptionNote() {
  const std::string note = optionsRoom.note();
  images.panel.Label7[0].setCaption(note);
  images.panel.Label7[0].setVisible(!note.empty());
}

void MainForm::shrinkOrResume() {
  const bool shrink = !shrunk();
  main.comMastWindow.setCaption(shrink ? "Resume" : "Shrink");
  download.comClear_OK_Count.setVisible(!shrink);
  download.txtWrite_OK_Count.setVisible(!shrink);
  shrinkChanged.emit();
}

// A project may come while the options are locked, as through its own button; an image goes to the buffer that is
// shown.
void MainForm::openDropped(const std::string& path) {
  if (activity.busy()) return;
  const bool data = !images::isProjectPath(path) && main.TabStrip2.selectedKey() == "EEPROM_File";
  const auto& way = images::isProjectPath(path) ? project.panel.comOpenBatchFile[0]
                    : data                      ? images.panel.comLoadDataFile
                                                : images.panel.comLoadFile;
  if (!way.enabled()) return;
  images.opener.open(path, data ? images::ImageKind::Data : images::ImageKind::Code);
}

void MainForm::splitterMoved(int tabWidthTwips) {
  main.tabWidth = std::max(tabWidthTwips, 100);
  settings.saveFrame24Width(main.tabWidth);
}

void MainForm::saveWindowPlace(const WindowPlace& place) {
  settings.saveWindowPlace(place);
}

}  // namespace kvr::shell
