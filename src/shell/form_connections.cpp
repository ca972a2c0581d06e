// What the rooms tell each other: every callback of a lower room that a higher one answers.

#include <stdexcept>
#include <utility>

#include "engine/batch_log.h"
#include "shell/main_form.h"

namespace kvr::shell {
void MainForm::connectEngine() {
  stop.onRequest = [this] { tracer.stopAsked(); };
  display.onPortStatus = [this](const std::string& why) { portLine.opened(why); };
  traces.say = [this](const std::string& text) { notices.say(text); };
  results.writeLog = [this](const download::RunRecord& record) { logRun(record); };
  downloads.wantsPort = [this] { return comTool.autoOpens(); };
  downloads.takePort = [this] { comTool.takePort(); };
  batches.placeNow = [this] {
    return portPlace ? portPlace(main.combCommPort.listIndex() + 1) : BatchRoom::Place{main.combCommPort.text(), {}};
  };
}

void MainForm::connectFiles() {
  project.applyModel = [this](const std::string& name) {
    if (!picker.tryApply(name)) return false;
    main.Label2[6].setCaption("MCU Type: " + name);
    return true;
  };
  images.opener.openProject = [this](const std::string& path) {
    main.TabStrip2.select("Batch_quantity");
    return project.openProject(path);
  };
  images.watcher.onTrigger = [this] { trigger.sendAndDownload(); };
  images.watcher.onDownload = [this] { downloads.program(); };
  images.storeCompare.receivedBytes = [this]() -> std::span<const std::uint8_t> {
    if (comTool.rxRing().empty()) return {};
    return comTool.rxRing().buffer();
  };
}

void MainForm::connectTerminal() {
  notices.follow(tool.labPort);
  notices.follow(tool.labLog, "Log: ");  // which counts the bytes
  comTool.portIsBack = [this](const std::string& words) { notices.say(words); };
  comTool.stopRun = [this] { downloads.stop(); };
  comTool.bytesReceived = [this](std::span<const std::uint8_t> bytes) { sfrMonitor.receive(bytes); };
  comTool.portClosed = [this] { sfrMonitor.portClosed(); };
  comTool.clearMonitor = [this] { sfrMonitor.clearLists(); };
  sfrMonitor.write = [this](std::span<const std::uint8_t> bytes) { comTool.writeAnswer(bytes); };
  sfrMonitor.openAndSend = [this](std::span<const std::uint8_t> bytes) { comTool.send(bytes); };
}

// A callback that a lower room relies on and nobody has connected would be a step that silently does not happen.
void MainForm::checkConnections() const {
  const std::pair<const char*, bool> all[] = {
      {"picker.picked", bool(picker.picked)},
      {"picker.applied", bool(picker.applied)},
      {"traces.say", bool(traces.say)},
      {"results.writeLog", bool(results.writeLog)},
      {"downloads.wantsPort", bool(downloads.wantsPort)},
      {"downloads.takePort", bool(downloads.takePort)},
      {"batches.placeNow", bool(batches.placeNow)},
      {"project.applyModel", bool(project.applyModel)},
      {"images.opener.openProject", bool(images.opener.openProject)},
      {"images.watcher.onTrigger", bool(images.watcher.onTrigger)},
      {"images.watcher.onDownload", bool(images.watcher.onDownload)},
      {"images.storeCompare.receivedBytes", bool(images.storeCompare.receivedBytes)},
      {"comTool.stopRun", bool(comTool.stopRun)},
      {"comTool.bytesReceived", bool(comTool.bytesReceived)},
      {"comTool.portIsBack", bool(comTool.portIsBack)},
      {"comTool.portClosed", bool(comTool.portClosed)},
      {"comTool.clearMonitor", bool(comTool.clearMonitor)},
      {"sfrMonitor.write", bool(sfrMonitor.write)},
      {"sfrMonitor.openAndSend", bool(sfrMonitor.openAndSend)},
  };
  for (const auto& [name, connected] : all)
    if (!connected) throw std::logic_error(std::string("not connected: ") + name);
}

// On the disk before anyone reads the verdict. A log that cannot be written is said in the pane: the chip itself is
// fine.
void MainForm::logRun(const download::RunRecord& record) {
  if (!main.cheBatchLog.value()) return;
  nameBatchLog();
  const auto written =
      engine::appendToBatchLog(world.files, main.txtBatchLog.trimmed(),
                               engine::batchEntry(record.outcome, record.time, record.model, record.serialNumber));
  const std::string failure = "The batch log could not be written: " + written.error;
  if (!written) main.textMsg.appendLine(failure);
  notices.say(written ? "A line was added to the batch log " + main.txtBatchLog.trimmed() : failure);
}

}  // namespace kvr::shell
