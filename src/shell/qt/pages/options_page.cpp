#include "shell/qt/pages/pages.h"

namespace kvr::window {
namespace {

using options::OptionPanel;

// The lists that stand in an option's line in the families that have them.
constexpr int kFrequencyRow = 0;
constexpr int kWakeUpRow = 7;
constexpr int kVoltageRow = 10;
constexpr int kNotedRow = 2;  // small print of one family stands below it

void addCell(QHBoxLayout& cell, QWidget* widget) {
  widget->setContentsMargins(0, 1, 0, 1);
  cell.addWidget(widget);
}

// Runs `show` now and at every change of the control, as long as the widget lives.
void follow(QWidget* widget, platform::Control& control, const std::function<void()>& show) {
  auto token = std::make_shared<platform::Signal::Token>(control.changed.watch(show));
  QObject::connect(widget, &QObject::destroyed, widget, [token] { token->reset(); });
  show();
}

// Rows that a family leaves out take no room: spacing is in the widgets, not between the rows.
QGridLayout* optionRows(const Maker& maker) {
  auto& panel = maker.form.options;
  auto* grid = new QGridLayout;
  grid->setVerticalSpacing(0);
  grid->setHorizontalSpacing(16);
  for (int i = 0; i < OptionPanel::kRows; ++i) {
    auto& line = panel.LabOption[static_cast<std::size_t>(i)];
    auto* label = maker.label(line);
    label->setContentsMargins(0, 3, 0, 3);
    const int at = i > kNotedRow ? i + 1 : i;
    grid->addWidget(label, at, 0);
    auto* cell = new QHBoxLayout;
    cell->setSpacing(14);
    for (auto* button : panel.optionButtons(i)) {
      auto* choice = maker.option(*button);
      addCell(*cell, choice);
      // "YES" and "NO" stand on many lines: whoever cannot see the line hears it with the button.
      follow(choice, line, [choice, &line] { choice->setAccessibleDescription(qtText(line.caption())); });
    }
    if (i == kFrequencyRow)
      addCell(*cell,
              maker.combo(panel.com_RC_frequency[5], QStringLiteral("Frequency of the internal oscillator, MHz")));
    if (i == kWakeUpRow)
      addCell(*cell, maker.combo(panel.comWDT_Prescalar[1], QStringLiteral("Clocks to wait after wake-up")));
    if (i == kVoltageRow)
      addCell(*cell, maker.combo(panel.com_RC_frequency[4], QStringLiteral("Low voltage threshold")));
    cell->addStretch(1);
    grid->addLayout(cell, at, 1);
  }
  grid->addWidget(maker.label(maker.form.images.panel.Label7[0]), kNotedRow + 1, 0, 1, 2);
  grid->setColumnStretch(1, 1);
  return grid;
}

// Shown and hidden with the control beside it.
QWidget* withCaption(const Maker& maker, platform::ComboBox& control, const QString& caption) {
  auto* box = maker.combo(control, caption);
  auto* label = captionFor(caption, box);
  auto* group = new QWidget;
  group->setLayout(row({label, box, nullptr}));
  follow(label, control, [label, &control] { label->setVisible(control.visible()); });
  return group;
}

// The coarse and fine trim that one family is given by hand.
QWidget* trimRow(const Maker& maker) {
  auto& panel = maker.form.options;
  auto* group = new QWidget;
  group->setLayout(row({maker.label(panel.Label8[0]), maker.label(panel.Label8[1]),
                        maker.combo(panel.com_RC_frequency[1], QStringLiteral("Trim of the oscillator: band")),
                        maker.label(panel.Label8[2]),
                        maker.combo(panel.com_RC_frequency[2], QStringLiteral("Trim of the oscillator: step")),
                        maker.label(panel.Label8[3]),
                        maker.line(panel.txt_RC_frequency, QStringLiteral("Trim of the oscillator: fine value"), 5),
                        maker.label(panel.Label8[4]), nullptr}));
  return group;
}

QGroupBox* pinGroup(const Maker& maker) {
  auto& p = maker.form.options;
  auto* column = new QVBoxLayout;
  column->setSpacing(2);
  column->addLayout(row({maker.option(p.opt_485_pin[0]), maker.option(p.opt_485_pin[1]),
                         maker.combo(p.comb_485_pin, QStringLiteral("Pin that controls the RS485 driver")), nullptr}));
  column->addLayout(row({maker.option(p.opt_485_logic[0]), maker.option(p.opt_485_logic[1]), nullptr}));
  column->addLayout(
      row({maker.option(p.opt_External_WDT[0]), maker.option(p.opt_External_WDT[1]),
           maker.combo(p.comb_External_WDT, QStringLiteral("Pin that feeds the external watchdog")), nullptr}));
  auto* group = makeGroup(QStringLiteral("Pins that the chip drives while it is programmed"));
  group->setObjectName(QStringLiteral("Frame16"));
  group->setLayout(column);
  return group;
}

}  // namespace

QWidget* makeOptionsPage(const Maker& maker) {
  auto& panel = maker.form.options;
  auto* column = new QVBoxLayout;
  column->setSpacing(2);
  column->addLayout(optionRows(maker));
  column->addWidget(withCaption(maker, panel.comWDT_Prescalar[0], QStringLiteral("Prescalar value of WatchDog Timer")));
  column->addWidget(trimRow(maker));
  column->addLayout(row({maker.label(panel.LabOptionC[0]), maker.label(panel.LabOptionC[1]), nullptr}));
  column->addSpacing(4);
  column->addWidget(pinGroup(maker));
  column->addStretch(1);
  return page("Frame12", column);
}

}  // namespace kvr::window
