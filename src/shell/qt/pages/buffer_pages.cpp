// The pages of the two memory images: what the file is, and the image in hexadecimal.
#include "shell/qt/hex_view.h"
#include "shell/qt/pages/pages.h"

namespace kvr::window {
namespace {

QWidget* bufferPage(const Maker& maker, platform::Frame& frame, platform::Label& info, platform::Label& length,
                    int view) {
  auto* column = new QVBoxLayout;
  column->setContentsMargins(6, 2, 6, 4);
  column->setSpacing(2);
  auto* words = maker.label(info);
  words->setWordWrap(true);
  auto* head = row({words, maker.label(length)});
  head->setStretch(0, 1);
  column->addLayout(head);
  auto& panel = maker.form.images.panel;
  column->addWidget(makeHexPage(maker.loop(), view == 0 ? panel.txtBuffer2 : panel.tetDataFlash2,
                                panel.vscFile[static_cast<std::size_t>(view)],
                                view == 0 ? QStringLiteral("Code image in hexadecimal")
                                          : QStringLiteral("Data image in hexadecimal")),
                    1);
  auto* group = makeFrame(maker.loop(), frame);
  group->setLayout(column);
  return group;
}

}  // namespace

QWidget* makeCodeBufferPage(const Maker& maker) {
  auto& p = maker.form.images.panel;
  return bufferPage(maker, p.Frame7, p.labFileInfo, p.Label7[1], 0);
}

QWidget* makeDataBufferPage(const Maker& maker) {
  auto& p = maker.form.images.panel;
  return bufferPage(maker, p.frmDataFlash, p.labDataFileInfo, p.Label7[2], 1);
}

}  // namespace kvr::window
