// What the rooms tell each other: every callback of a lower room that a higher one answers.

#include "platform/text.h"
#include "shell/batch_log.h"
#include "shell/main_form.h"

namespace kvr::shell {

void MainForm::connectEngine() {
  link.baseFrequencyMHz = [this] { return optionsRoom.baseFrequencyHz() / 1000000; };
  link.onPortStatus = [this](const std::string& why) { portLine.opened(why); };
  sessionHooks = {
      .imgOpen_Click = [this] { comTool.imgOpen_Click(); },
      .imgNotOpen_Click = [this] { comTool.imgNotOpen_Click(); },
      .autoOpenPort = [this] { return comTool.autoOpens(); },
      .reloadIfAsked = [this] { return !images.panel.cekReloadFile.value() || images.loader.reload(); },
      .armCounters = [this] { return images.counters.armForRun(); },
      .advanceCounters = [this] { return images.counters.advanceAfterSuccess(); },
      .serialNumber = [this] { return images.counters.numberInHand(); },
      .relock =
          [this] {
            if (project.lockAfterRun()) project.comLockOptions_Click();
          },
      .closeAsked = [this] { return firstClose_; },
      .onRunEnd = [this](const engine::RunRecord& record) { logRun(record); },
  };
  offlineSession.composeOptions = [this] { optionsRoom.composeOptions(); };
  offlineSession.releaseToolPort = [this] { comTool.imgOpen_Click(); };
  offlineSession.stopOperation = [this] { session.stopOperation(); };
  demoDownload.releaseToolPort = [this] { comTool.imgOpen_Click(); };
  demoDownload.stopOperation = [this] { session.stopOperation(); };
  trigger.releaseToolPort = [this] { comTool.imgOpen_Click(); };
  trigger.download = [this] { session.comDownload_Click(0); };
}

void MainForm::connectFiles() {
  project.applyModel = [this](const std::string& name) {
    if (!picker.tryApply(name)) return false;
    main.Label2[6].setCaption("MCU Type: " + name);
    return true;
  };
  images.loader.openProject = [this](const std::string& path) {
    main.TabStrip2.select("Batch_quantity");
    project.openProject(path);
  };
  images.setAlone([this](const std::function<void()>& work) {
    const auto running = activity.begin();
    if (!running) return false;
    work();
    return true;
  });
  images.watcher.isBusy = [this] { return activity.busy(); };
  images.watcher.onTrigger = [this] { trigger.comSendUserCode_Click(); };
  images.watcher.onDownload = [this] { session.comDownload_Click(0); };
  images.storeCompare.receivedBytes = [this]() -> std::span<const std::uint8_t> {
    if (comTool.rxRing().empty()) return {};
    return comTool.rxRing().buffer();
  };
}

void MainForm::connectTerminal() {
  comTool.stopRun = [this] { session.comStop_Download_Click(); };
  comTool.bytesReceived = [this](std::span<const std::uint8_t> bytes) { sfrMonitor.monitorScan(bytes); };
  comTool.clearMonitor = [this] { sfrMonitor.clearLists(); };
  sfrMonitor.write = [this](std::span<const std::uint8_t> bytes) { comTool.writeAnswer(bytes); };
  sfrMonitor.openAndSend = [this](std::span<const std::uint8_t> bytes) { comTool.send(bytes); };
}

// On the disk before anyone reads the verdict. A log that cannot be written is said in the pane: the chip itself is
// fine.
void MainForm::logRun(const engine::RunRecord& record) {
  if (!main.cheBatchLog.value()) return;
  nameBatchLog();
  const auto written =
      appendToBatchLog(world.files, main.txtBatchLog.trimmed(),
                       {.time = record.time,
                        .model = record.model,
                        .verdict = record.passed ? "PASS" : "FAIL",
                        .failure = record.failure,
                        .codeSum = platform::hexText(static_cast<std::uint32_t>(record.codeSum), 7) + "H",
                        .dataSum = platform::hexText(static_cast<std::uint32_t>(record.dataSum), 7) + "H",
                        .firmware = record.firmware,
                        .serial = record.serialNumber,
                        .factoryId = record.factoryId,
                        .seconds = record.seconds});
  if (!written) main.textMsg.appendLine("The batch log could not be written: " + written.error);
}

}  // namespace kvr::shell
