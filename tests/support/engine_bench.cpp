#include "tests/support/engine_bench.h"

#include <algorithm>
#include <random>

#include "catalogue/selected_model.h"
#include "engine/block_plan.h"
#include "platform/text.h"

namespace kvr::support {

std::vector<std::uint8_t> randomBytes(std::uint64_t seed, std::size_t count) {
  std::mt19937_64 random(seed);
  std::vector<std::uint8_t> bytes(count);
  for (auto& byte : bytes) byte = static_cast<std::uint8_t>(random());
  return bytes;
}

EngineBench::EngineBench(sim::WireConfig wireConfig)
    : VirtualWorld(std::move(wireConfig)),
      options(dialogs, optionPanel, model, lock, textMsg, stepFrame),
      imageRoom(world, model, activity, lock, textMsg),
      lease(loop, tracer.link()),
      display(loop, dialogs, controls, options, panel.verdict),
      results(world, panel, textMsg, traces),
      runs{{loop, clock, lease, stop}, tracedView, results, activity, lock},
      downloads(runs, dialogs, jobPanels, panel, controls, imageRoom, options, noBooks) {
  combCommPort.setItems({"COM1", "COM2", "COM3"});
  combCommPort.setListIndex(0);
  ProgressBar1.setVisible(false);
  results.writeLog = [this](const download::RunRecord& record) { records.push_back(record); };
  stop.onRequest = [this] { tracer.stopAsked(); };
  downloads.wantsPort = [this] { return terminalWantsPort; };
  downloads.takePort = [this] {
    if (takePort) takePort();
  };
}

void EngineBench::select(std::string_view name) {
  model = catalogue::describeModel(*catalogue::findByName(name));
  options.showFamilyPanel();
  if (optionPanel.com_RC_frequency[5].text().empty()) optionPanel.com_RC_frequency[5].setText("11.0592");
}

void EngineBench::bauds(const std::string& minimum, const std::string& maximum) {
  panel.cobBaudMin.setText(minimum);
  panel.cobBaudMax.setText(maximum);
}

sim::Chip& EngineBench::insertChip(Millis after, std::uint64_t seed, double clockHz) {
  const auto* row = catalogue::findByName(model.record.name);
  return insertChip(sim::configFor(*row, clockHz, seed), after);
}

namespace {

// `size` random bytes from the start on, or what the model has `room` for.
void fill(images::ImageBuffer& image, std::uint64_t seed, std::int32_t size, std::int32_t room) {
  const std::int32_t count = size > 0 ? size : room;
  image.fill(0);
  image.put(0, randomBytes(seed, static_cast<std::size_t>(count)));
  image.fileStart = image.rangeStart = 0;
  image.fileEnd = image.rangeEnd = count - 1;
  image.loaded = true;
}

}  // namespace

void EngineBench::loadCode(std::uint64_t seed, std::int32_t size) {
  images::ImageBuffer& code = images.CodeBuffer;
  fill(code, seed, size, model.record.apEnd + 1);
  code.fileEnd = code.rangeEnd = std::max(code.rangeEnd, 511);
  images.imageValid = true;
}

void EngineBench::loadData(std::uint64_t seed, std::int32_t size) {
  fill(images.EepromBuffer, seed, size, model.record.dataEnd - model.record.dataStart + 1);
  images.imageValid = true;
}

bool EngineBench::press(platform::Button& button, Millis limit) {
  bool late = false;
  platform::Timer guard(loop, [&] {
    late = true;
    downloads.stop();
  });
  guard.start(limit);
  hung = !VirtualWorld::press(button, limit + Millis(60000));
  return !hung && !late;
}

void EngineBench::pressAfter(Millis time, platform::Button& button) {
  loop.after(time, [&button] { button.press(); });
}

options::OptionBytes EngineBench::wanted() const {
  std::optional<options::RcTrim> trim;
  if (!records.empty() && outcome().chip) trim = outcome().chip->trim;
  return options::composeOptions(options.readPanel(), trim).bytes;
}

std::string EngineBench::flashDifference() const {
  const engine::Job job = download::readJob(jobPanels, panel.cheTL.value());
  const auto version = catalogue::FirmwareVersion::fromByte(static_cast<std::uint8_t>(chip->config().firmware));
  const auto plan = engine::planSends(model.record, version, model.blockSize, job.frameSize, job.code, job.data);
  for (const engine::SendRange& range : plan.ranges) {
    for (std::int32_t at = range.first; at <= range.last && at < std::ssize(chip->flash()); ++at) {
      const std::uint8_t held = chip->flash()[static_cast<std::size_t>(at)];
      if (held != plan.at(at))
        return "at " + platform::hexText(static_cast<std::uint32_t>(at), 4) + " holds " + platform::hexText(held, 2) +
               ", wanted " + platform::hexText(plan.at(at), 2);
    }
  }
  return {};
}

int EngineBench::lines(std::string_view line) const {
  int count = 0;
  const std::string all = "\n" + text() + "\n";
  const std::string wanted = "\n" + std::string(line) + "\n";
  for (auto at = all.find(wanted); at != std::string::npos; at = all.find(wanted, at + 1)) ++count;
  return count;
}

std::string EngineBench::notAtRest() const {
  std::string faults;
  const auto check = [&](bool good, const char* what) {
    if (!good) faults += std::string(what) + "; ";
  };
  check(lock.free(), "the lock is on");
  check(!link.isOpen(), "the port is open");
  check(!activity.busy(), "something runs");
  check(panel.comDownload[0].enabled() && panel.comDownload[1].enabled(), "Program is off");
  check(!panel.comStop_Download.enabled(), "Stop is on");
  check(!imgOpen_sys.on(), "the lamp is on");
  check(!ProgressBar1.visible(), "the progress bar is shown");
  return faults;
}

}  // namespace kvr::support
