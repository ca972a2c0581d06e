// The pages of the ways into the chip beside the main one: user's command, demo routine, off-line board.
#include "shell/qt/flow_row.h"
#include "shell/qt/pages/pages.h"

namespace kvr::window {
namespace {

QLayout* lineBoxes(const Maker& maker, const userpath::LineBoxes& boxes, QLabel* baud, QLabel* parity, QLabel* data,
                   QLabel* stop, const QString& of) {
  return flow({together(baud, maker.combo(boxes.baud, QStringLiteral("Baud rate") + of)),
               together(parity, maker.combo(boxes.parity, QStringLiteral("Parity") + of)),
               together(data, maker.combo(boxes.dataBits, QStringLiteral("Data bits") + of)),
               together(stop, maker.combo(boxes.stopBits, QStringLiteral("Stop bits") + of))});
}

}  // namespace

QWidget* makeSelfDefinedPage(const Maker& maker) {
  auto& p = maker.form.userpath;
  auto* column = new QVBoxLayout;
  column->addWidget(maker.label(p.labUserCode[0]));
  column->addLayout(lineBoxes(maker, p.userCodeLine(), maker.label(p.labUserCode[1]), maker.label(p.labUserCode[2]),
                              maker.label(p.labUserCode[3]), maker.label(p.labUserCode[4]),
                              QStringLiteral(" of the self-defined command")));
  column->addLayout(row({maker.label(p.labUserCode[5]),
                         maker.line(p.txtUserCode, QStringLiteral("Self-defined command, hexadecimal bytes"))}));
  column->addLayout(
      flow({maker.button(p.comSendUserCode),
            maker.button(maker.form.main.comHelp[0], 0, QStringLiteral("Help on the self-defined command"))}));
  column->addWidget(maker.longCheck(maker.form.images.panel.cekReloadFileWhileFileChange1));
  auto* explanation = maker.label(p.labUserCode[6]);
  explanation->setWordWrap(true);
  column->addWidget(explanation);
  column->addStretch(1);
  auto* frame = makeFrame(maker.loop(), p.Frame8);
  frame->setLayout(column);
  auto* outer = new QVBoxLayout;
  outer->addWidget(frame);
  return page("user_code_page", outer);
}

QWidget* makeDemoPage(const Maker& maker) {
  auto& p = maker.form.userpath;
  auto& o = maker.form.options;
  auto* column = new QVBoxLayout;
  column->addLayout(
      flow({maker.button(p.com_Demo_DownLoad, 0, QStringLiteral("Program through the demo routine")),
            maker.button(p.com_Demo_Re_DownLoad, 0, QStringLiteral("Program again and again through the demo routine")),
            maker.button(p.com_Demo_Stop, 0, QStringLiteral("Stop the run through the demo routine"))}));
  column->addWidget(maker.label(p.labDemo[0]));
  column->addLayout(lineBoxes(maker, p.demoLine(), maker.label(p.labDemo[1]), maker.label(p.labDemo[2]),
                              maker.label(p.labDemo[3]), maker.label(p.labDemo[4]),
                              QStringLiteral(" of the demo download")));
  column->addWidget(maker.check(p.che_Demo_DownLoad));
  column->addWidget(maker.label(p.labDemo[5]));
  column->addLayout(lineBoxes(maker, p.demoCommandLine(), maker.label(p.labDemo[6]), maker.label(p.labDemo[7]),
                              maker.label(p.labDemo[8]), maker.label(p.labDemo[9]),
                              QStringLiteral(" of the command before the demo download")));
  column->addLayout(
      row({maker.label(p.labDemo[10]),
           maker.line(p.txt_DEMO_UserCode, QStringLiteral("Command before the demo download, hexadecimal bytes"))}));
  column->addLayout(
      flow({maker.option(o.opt_ISP_DEMO_WDT[0]), maker.option(o.opt_ISP_DEMO_WDT[1]),
            maker.combo(o.comb_WDT, QStringLiteral("Pin that feeds the external watchdog during the demo download"))}));
  column->addStretch(1);
  auto* frame = makeFrame(maker.loop(), p.Frame11);
  frame->setLayout(column);
  auto* outer = new QVBoxLayout;
  outer->addWidget(frame);
  return page("ISP_DEMO_page", outer);
}

QWidget* makeOfflinePage(const Maker& maker) {
  auto& p = maker.form.offline;
  auto* column = new QVBoxLayout;
  auto* purpose = maker.label(p.labTJXZ[0]);
  auto* way = maker.label(p.labTJXZ[1]);
  purpose->setWordWrap(true);
  way->setWordWrap(true);
  column->addWidget(purpose);
  column->addWidget(way);
  column->addLayout(
      row({maker.label(p.labTJXZ[2]),
           maker.line(p.txt_download_max, QStringLiteral("How many chips the board may program"), 9), nullptr}));
  column->addLayout(
      flow({maker.button(p.comTJXZ), maker.button(p.com_TJXZ_help, 0, QStringLiteral("Help on the off-line board"))}));
  column->addLayout(
      row({maker.label(p.labTJXZ[3]), maker.combo(p.combPins, QStringLiteral("Pins of the package")), nullptr}));
  for (std::size_t i = 0; i < p.che_staple.size(); ++i) column->addWidget(maker.longCheck(p.che_staple[i]));
  column->addStretch(1);
  auto* frame = makeFrame(maker.loop(), p.Frame18);
  frame->setLayout(column);
  auto* outer = new QVBoxLayout;
  outer->addWidget(frame);
  return page("TJXZ_page", outer);
}

}  // namespace kvr::window
