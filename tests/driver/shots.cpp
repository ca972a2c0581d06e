#include "tests/driver/shots.h"

#include <QDialog>
#include <QDir>
#include <QFrame>

namespace kvr::window {
namespace {

class Photographer {
 public:
  Photographer(Application& program, const QString& folder, const QString& prefix)
      : program_(program), start_(folder + QLatin1Char('/') + prefix) {
    QDir().mkpath(folder);
  }
  void shoot(const QString& name) {
    platform::delay(program_.loop, platform::Millis(60));
    program_.window->grab().save(start_ + name + QStringLiteral(".png"));
  }
  void tabs(platform::TabStrip& strip, const QString& which) {
    const bool lower = &strip == &program_.form.main.TabStrip1;
    program_.form.areas.pressed(lower ? shell::Area::Lower : shell::Area::Upper);
    for (std::size_t i = 0; i < strip.tabs().size(); ++i) {
      strip.userSelect(static_cast<int>(i));
      if (strip.selected() == static_cast<int>(i)) shoot(which + qtText(strip.tabs()[i].key));
    }
    strip.userSelect(0);
  }
  // Each area alone, and both.
  void heights() {
    auto& form = program_.form;
    for (const auto& [area, name] : {std::pair(shell::Area::Upper, "upper"), std::pair(shell::Area::Lower, "lower")}) {
      if (form.areas.heights() != shell::aloneOf(area)) form.areas.toggle(area);
      shoot(QStringLiteral("tall-") + QLatin1String(name));
    }
    form.areas.toggle(shell::Area::Lower);
    shoot(QStringLiteral("tall-none"));
  }
  // What the view marks: changed bytes, gaps, what a second file has otherwise, a selection, the serial number.
  void hexMarks() {
    auto& slot = program_.form.images.slots.code;
    auto other = slot.buffer.held();
    for (const std::size_t at : {0x3022, 0x3023, 0x3031, 0x3056}) other.bytes[at] ^= 0x5A;
    slot.buffer.edit(0x3030, std::vector<std::uint8_t>{0xDE, 0xAD, 0xBE, 0xEF});
    slot.buffer.takeIn(0x3000, 0x30FF);
    slot.pane.model.compareWith("other.hex", std::move(other));
    slot.pane.model.setField({0x3048, 0x304F});
    slot.pane.model.selectSpan({0x3025, 0x3028});
    slot.buffer.touch();
    slot.pane.refresh();
    shoot(QStringLiteral("hex-marks"));
    slot.pane.model.endComparison();
  }
  // A terminal in use, with all that its page has to say; a notice, and a file that looks wrong.
  void atWork() {
    auto& form = program_.form;
    auto& tool = form.tool;
    form.main.TabStrip2.userSelect(2);
    for (int line = 0; line < 40; ++line)
      tool.texReceive.append("[10:12:" + std::to_string(10 + line) + ".042] adc " + std::to_string(line * 37 % 1024) +
                             (line % 9 == 0
                                  ? " \u6E29\u5EA6 23.5 \u00B0C, and a line that is as long as only a firmware "
                                    "in a talkative mood writes one, on and on\n"
                                  : " ok\n"));
    tool.barPaste.setVisible(true);
    tool.barPaste.setValue(42);
    tool.comPasteStop.setVisible(true);
    tool.labFind.setCaption("Went on from the start");
    tool.labPort.setCaption("Waiting for COM1 to come back");
    tool.labPaste.setCaption("Paste cancelled: 3312 of 1000000 bytes");
    tool.labLog.setCaption("Log: terminal-2026-11-24-101210.log, 12.1 KB");
    tool.labReceiveCount.setCaption("Receive counter:123456789");
    auto& files = form.images.slots.code;
    files.warnings.setCaption("Begins with FF, as empty memory does.\nStarts at 0100H, not at 0000H.");
    form.notices.say("The trace cannot be saved: no space left on the device");
    shoot(QStringLiteral("at-work"));
    form.main.TabStrip2.userSelect(0);
  }
  void families() {
    for (const auto& traits : catalogue::allFamilies()) {
      const auto* record = firstModel(traits.family);
      if (!record || !program_.form.picker.tryApply(std::string(record->name))) continue;
      shoot(QStringLiteral("family%1-").arg(numberOf(traits.family), 2, 10, QLatin1Char('0')) +
            qtText(std::string(record->name)));
    }
  }
  void verdicts() {
    using download::VerdictKind;
    const std::pair<VerdictKind, const char*> all[] = {
        {VerdictKind::Waiting, "waiting"}, {VerdictKind::Working, "working"}, {VerdictKind::Pass, "pass"},
        {VerdictKind::PassInPart, "part"}, {VerdictKind::Fail, "fail"},       {VerdictKind::Idle, "ready"}};
    for (const auto& [kind, name] : all) {
      program_.form.download.verdict.set(kind);
      shoot(QStringLiteral("verdict-") + QString::fromLatin1(name));
    }
  }
  // What follows a run: the offers beside the sign, and the picture of two runs.
  void aftermath() {
    using namespace std::chrono_literals;
    engine::Outcome good{.kind = engine::RunKind::Demo, .ending = engine::Ending::Passed, .baud = 115200};
    good.bytesSent = 34232;
    good.spent = {0us, 2300000us, 60000us, 620000us, 410000us, 4321000us, 20000us, 1310000us, 12000us};
    program_.form.results.end(good, "Ivy-HF0S", {});
    engine::Outcome bad{.stage = engine::Stage::Program, .words = "Programing failed. (End: 12:00:00)"};
    bad.firstBaud = 2400;
    bad.baud = bad.triedBaud = 115200;
    bad.spent = {0us, 1100000us, 60000us, 940000us, 420000us, 3120000us, 0us, 0us, 0us};
    for (const auto at : {1500000us, 2900000us, 3000000us, 5300000us, 5400000us})
      bad.setbacks.push_back({at < 2000000us ? engine::Setback::RateRefused : engine::Setback::BlockAgain, at});
    program_.form.results.end(bad, "Ivy-HF0S", {});
    shoot(QStringLiteral("lower-baud"));
    program_.form.download.comLastRun.press();
    platform::delay(program_.loop, platform::Millis(60));
    auto* picture = program_.window->findChild<QWidget*>(QStringLiteral("lastRunWindow"));
    picture->grab().save(start_ + QStringLiteral("last-run.png"));
    picture->close();
    engine::Outcome other{.wrongModel = true, .chip = engine::ChipSeen{.model = "Rowan-H20"}};
    program_.form.results.end(other, "Ivy-HF0S", {});
    shoot(QStringLiteral("select-model"));
    program_.form.results.forget();
  }
  void popups() {
    program_.form.main.Command3.press();
    shoot(QStringLiteral("models"));
    program_.form.picker.hideDeviceTree();
    int number = 0;
    for (auto* frame : program_.window->findChildren<QFrame*>(QStringLiteral("settingsPopup"))) {
      frame->show();
      frame->grab().save(start_ + QStringLiteral("settings-%1.png").arg(++number));
      frame->hide();
    }
    auto& main = program_.form.main;
    main.comMastWindow.press();
    shoot(QStringLiteral("shrunk"));
    main.cheStripOnly.userSet(true);
    shoot(QStringLiteral("strip"));
    main.comMastWindow.press();
    main.cheStripOnly.userSet(false);
    program_.form.download.comPlan.press();
    if (auto* plan = program_.window->findChild<QDialog*>(QStringLiteral("helpWindow"))) {
      platform::delay(program_.loop, platform::Millis(60));
      plan->grab().save(start_ + QStringLiteral("plan.png"));
      plan->close();
    }
  }

 private:
  static const catalogue::McuRecord* firstModel(catalogue::Family family) {
    for (const auto& record : catalogue::allRows())
      if (record.family == family && !record.name.empty() && !record.noOptions) return &record;
    return nullptr;
  }
  Application& program_;
  QString start_;
};

}  // namespace

void takeShots(Application& program, const QString& folder, const QString& prefix, std::function<void()> ended) {
  program.loop.post([&program, folder, prefix, ended = std::move(ended)] {
    Photographer camera(program, folder, prefix);
    camera.tabs(program.form.main.TabStrip2, QStringLiteral("upper-"));
    camera.tabs(program.form.main.TabStrip1, QStringLiteral("lower-"));
    camera.heights();
    camera.hexMarks();
    camera.verdicts();
    camera.aftermath();
    camera.popups();
    camera.atWork();
    camera.families();
    ended();
  });
}

}  // namespace kvr::window
