#include "download/job_panel.h"

#include "download/power_area.h"
#include "platform/text.h"

namespace kvr::download {
namespace {

std::vector<catalogue::AddressRange> numbersOf(const images::AutoIncrement& counter) {
  if (!counter.armed) return {};
  return {counter.field()};
}

int baudOf(const platform::ComboBox& box) {
  return platform::wholeOf(box.text());
}

}  // namespace

engine::Job readJob(const JobPanels& panels, bool fixedLink) {
  engine::Job job;
  job.model = panels.model;
  job.imageValid = panels.images.state.imageValid;
  job.code = engine::imageOf(panels.images.state.CodeBuffer);
  job.data = engine::imageOf(panels.images.state.EepromBuffer);
  job.codeNumbers = numbersOf(panels.images.slots.code.counter);
  job.dataNumbers = numbersOf(panels.images.slots.data.counter);
  job.choices = panels.options.readPanel();
  job.doubleSpeed = panels.options.chosen("Double_speed_YES");
  job.wantedFrequencyHz = panels.options.wantedFrequencyHz();
  job.baseFrequencyHz = panels.options.baseFrequencyHz();
  job.watchdogPin = panels.options.externalWatchdogPin();
  job.port = panels.combCommPort.listIndex() + 1;
  job.firstBaud = baudOf(panels.download.cobBaudMin);
  job.highestBaud = baudOf(panels.download.cobBaudMax);
  job.turnRound = panels.download.cheSlowAnswers.value() ? engine::kFullTurnRound : engine::kShortTurnRound;
  job.fixedLink = fixedLink;
  job.power = readPower(panels.download);
  job.frameSize = engine::frameSizeOf(job.record(), fixedLink);
  return job;
}

}  // namespace kvr::download
