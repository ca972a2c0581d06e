// The pages about the chip on the wire: its options, its registers, and help on the hardware.
#include "shell/qt/pages/pages.h"

namespace kvr::window {

QWidget* makeCheckOptionPage(const Maker& maker) {
  auto& report = maker.form.options.LabLock;
  auto* column = new QVBoxLayout;
  column->setSpacing(2);
  column->addLayout(row({maker.button(maker.form.download.comReadChipLock, 'K'), nullptr}));
  column->addSpacing(6);
  for (std::size_t i = 0; i < report.size(); ++i) {
    auto* line = maker.label(report[i]);
    line->setWordWrap(true);
    if (i == 1) {
      QFont font = line->font();
      font.setBold(true);
      line->setFont(font);
    }
    column->addWidget(line);
  }
  column->addStretch(1);
  return page("Frame4", column);
}

QWidget* makeHardwarePage(const Maker& maker) {
  auto* column = new QVBoxLayout;
  column->addLayout(row({maker.button(maker.form.main.comHelp[1]), nullptr}));
  column->addStretch(1);
  return page("fraAboutHardWare", column);
}

QWidget* makeMonitorPage(const Maker& maker, int number) {
  auto& monitor = maker.form.monitor;
  auto& tool = maker.form.tool;
  const auto index = static_cast<std::size_t>(number);
  auto* column = new QVBoxLayout;
  const QString where = number == 1 ? QStringLiteral(" (register page)") : QStringLiteral(" (external memory page)");
  column->addLayout(
      row({makeLamp(maker.loop(), tool.imgOpen[index], QStringLiteral("The terminal's port is open") + where),
           maker.button(tool.comOpenCOM[index]), maker.button(tool.comDebugClear[index]),
           maker.button(monitor.comDebugContinue[index]), maker.button(tool.comDebugHelp[index]), nullptr}));
  QFont fixed(QStringLiteral("monospace"));
  fixed.setStyleHint(QFont::Monospace);
  auto* first =
      makeList(maker.loop(), number == 1 ? monitor.lst_debug1 : monitor.lst_debug3,
               number == 1 ? QStringLiteral("Registers") : QStringLiteral("External memory, first 1024 bytes"));
  auto* second = makeList(maker.loop(), number == 1 ? monitor.lst_debug2 : monitor.lst_debug4,
                          number == 1 ? QStringLiteral("Internal memory, 256 bytes")
                                      : QStringLiteral("External memory, window of 512 bytes"));
  first->setFont(fixed);
  second->setFont(fixed);
  auto* lists = row({first, second});
  lists->setStretch(0, number == 1 ? 1 : 2);
  lists->setStretch(1, 2);
  column->addLayout(lists, 1);
  if (number == 1) column->addWidget(maker.check(monitor.che_disable_Debug_SFR_232));
  auto* frame = makeFrame(maker.loop(), number == 1 ? monitor.Frame21 : monitor.Frame22);
  frame->setLayout(column);
  return frame;
}

}  // namespace kvr::window
