#include "shell/qt/flow_row.h"
#include "shell/qt/pages/pages.h"
#include "shell/qt/recent_button.h"

namespace kvr::window {

QWidget* makeProjectPage(const Maker& maker) {
  auto& p = maker.form.project.panel;
  auto* column = new QVBoxLayout;
  column->addWidget(
      note(QStringLiteral("A project keeps the model, the options, the serial numbers and both images in one file.")));
  auto& project = maker.form.project;
  auto* open = withRecent(maker, maker.button(p.comOpenBatchFile[0]), p.comOpenBatchFile[0],
                          {.name = QStringLiteral("Projects opened lately"),
                           .list = [&project] { return project.recent().list(); },
                           .open = [&project](const std::string& path) { return project.openProject(path); }});
  column->addLayout(
      row({open, maker.button(p.comSaveBatchFile), maker.button(p.Command1, 0, QStringLiteral("How projects are used")),
           maker.button(p.comStations)}));
  column->addLayout(row({captionFor(QStringLiteral("Project file")),
                         maker.line(p.texBatchFileName, QStringLiteral("Path of the project file"))}));
  column->addWidget(maker.label(maker.form.main.Label2[6]));
  column->addLayout(row({maker.button(p.comLockOptions), maker.button(p.comUnlockOptions), nullptr}));
  column->addStretch(1);
  return page("fra_Batch_quantity", column);
}

}  // namespace kvr::window
