#include <QGuiApplication>

#include "shell/qt/choice_button.h"
#include "shell/qt/flow_row.h"
#include "shell/qt/pages/pages.h"
#include "shell/qt/recent_button.h"

namespace kvr::window {

namespace {

// A store on another computer that does not answer takes its time.
std::vector<MenuChoice> openBatches(const shell::BatchRoom& batches) {
  QGuiApplication::setOverrideCursor(Qt::WaitCursor);
  const auto names = batches.openBatches();
  QGuiApplication::restoreOverrideCursor();
  if (!names.ok()) return {{names.fault.words, false}};
  std::vector<MenuChoice> choices;
  for (const std::string& name : names.value) choices.push_back({name});
  return choices;
}

QGroupBox* batchBox(const Maker& maker) {
  auto& batches = maker.form.batches;
  auto& p = batches.panel;
  auto* column = new QVBoxLayout;
  column->addWidget(
      note(QStringLiteral("With a batch, Program takes each serial number from the record store and writes each result "
                          "into it. Empty: no batch. New ones are made by the command: kvr batch new.")));
  auto* name =
      withChoices(maker, maker.line(p.txtBatch, QStringLiteral("Batch that the runs belong to"), 14), p.txtBatch,
                  {.name = QStringLiteral("Open batches of the record store"),
                   .none = QStringLiteral("No batch is open"),
                   .list = [&batches] { return openBatches(batches); },
                   .take = [&p](const std::string& batch) { p.txtBatch.userType(batch); }});
  auto* station = maker.line(p.txtStation, QStringLiteral("What the rows call this place; empty: the port"), 10);
  station->setPlaceholderText(QStringLiteral("the port"));
  auto* person = maker.line(p.txtOperator, QStringLiteral("Who works here, for the rows"), 10);
  column->addLayout(flow({together(captionFor(QStringLiteral("Name"), name), name),
                          together(captionFor(QStringLiteral("Station"), station), station),
                          together(captionFor(QStringLiteral("Operator"), person), person)}));
  auto* box = makeGroup(QStringLiteral("Batch"));
  box->setLayout(column);
  return box;
}

}  // namespace

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
      flow({open, maker.button(p.comSaveBatchFile),
            maker.button(p.Command1, 0, QStringLiteral("How projects are used")), maker.button(p.comStations)}));
  column->addLayout(row({captionFor(QStringLiteral("Project file")),
                         maker.line(p.texBatchFileName, QStringLiteral("Path of the project file"))}));
  column->addWidget(maker.label(maker.form.main.Label2[6]));
  column->addLayout(flow({maker.button(p.comLockOptions), maker.button(p.comUnlockOptions)}));
  column->addWidget(batchBox(maker));
  column->addStretch(1);
  return page("fra_Batch_quantity", column);
}

}  // namespace kvr::window
