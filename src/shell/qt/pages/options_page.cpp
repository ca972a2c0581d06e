#include "shell/qt/pages/option_lines.h"
#include "shell/qt/pages/pages.h"

namespace kvr::window {
namespace {

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
  column->addLayout(flow({maker.option(p.opt_485_pin[0]), maker.option(p.opt_485_pin[1]),
                          maker.combo(p.comb_485_pin, QStringLiteral("Pin that controls the RS485 driver"))}));
  column->addLayout(flow({maker.option(p.opt_485_logic[0]), maker.option(p.opt_485_logic[1])}));
  column->addLayout(flow({maker.option(p.opt_External_WDT[0]), maker.option(p.opt_External_WDT[1]),
                          maker.combo(p.comb_External_WDT, QStringLiteral("Pin that feeds the external watchdog"))}));
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
  column->addWidget(new OptionLines(maker));
  column->addWidget(trimRow(maker));
  column->addLayout(row({maker.label(panel.LabOptionC[0]), maker.label(panel.LabOptionC[1]), nullptr}));
  column->addSpacing(4);
  column->addWidget(pinGroup(maker));
  column->addStretch(1);
  return page("Frame12", column);
}

}  // namespace kvr::window
