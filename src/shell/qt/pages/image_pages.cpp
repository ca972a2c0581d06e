// The pages of the images: both buffers, serial numbers, storing and reloading.
#include "shell/qt/pages/pages.h"
#include "shell/qt/stacking.h"

namespace kvr::window {
namespace {

template <class Boxes, class Radix>
QGroupBox* counterGroup(const Maker& maker, platform::CheckBox& box, Boxes& boxes, Radix& radix, const QString& of) {
  auto* grid = new QGridLayout;
  grid->addWidget(maker.check(box, 0, QStringLiteral("Serial number in the ") + of), 0, 0, 1, 4);
  const QString captions[] = {QStringLiteral("Address of the last byte (HEX)"), QStringLiteral("Bytes"),
                              QStringLiteral("Next value"), QStringLiteral("Increase by")};
  for (int i = 0; i < 4; ++i) {
    auto* line = maker.line(boxes[static_cast<std::size_t>(i)],
                            captions[i] + QStringLiteral(" of the serial number in the ") + of, 12);
    grid->addWidget(captionFor(captions[i], line), i + 1, 0);
    grid->addWidget(line, i + 1, 1, 1, 3);
  }
  for (int i = 0; i < 3; ++i) {
    auto& control = radix[static_cast<std::size_t>(i)];
    grid->addWidget(maker.option(control, qtText(control.caption()) + QStringLiteral(" serial number in the ") + of), 5,
                    i + 1);
  }
  grid->setColumnStretch(3, 1);
  grid->setRowStretch(6, 1);
  auto* group = makeGroup(QStringLiteral("In the ") + of);
  group->setLayout(grid);
  return group;
}

}  // namespace

QWidget* makeIncrementPage(const Maker& maker) {
  auto& p = maker.form.images.panel;
  auto* both = new Stacking(
      counterGroup(maker, p.cheAuto_Increase, p.texAuto_Increase, p.optAuto_Increase, QStringLiteral("code")),
      counterGroup(maker, p.cheData_Auto_Increase, p.texData_Auto_Increase, p.optData_Auto_Increase,
                   QStringLiteral("EEPROM")));
  return page("fraAuto_Increase", row({both}));
}

QWidget* makeStorePage(const Maker& maker) {
  auto& p = maker.form.images.panel;
  auto* column = new QVBoxLayout;
  auto* grid = new QGridLayout;
  auto* start = maker.line(p.txt_Start_Address, QStringLiteral("Start address to store from, hexadecimal"), 8);
  auto* length = maker.line(p.txt_length, QStringLiteral("Length to store, hexadecimal"), 8);
  grid->addWidget(captionFor(QStringLiteral("Start Address"), start), 0, 0);
  grid->addWidget(start, 0, 1);
  grid->addWidget(captionFor(QStringLiteral("length(HEX)"), length), 1, 0);
  grid->addWidget(length, 1, 1);
  grid->addWidget(maker.button(p.comStoreFile), 0, 2);
  grid->addWidget(maker.button(p.comComp), 1, 2);
  grid->setColumnStretch(3, 1);
  column->addLayout(grid);
  column->addWidget(maker.longCheck(p.cekReloadFileWhileFileChange));
  column->addStretch(1);
  return page("Frame9", column);
}

}  // namespace kvr::window
