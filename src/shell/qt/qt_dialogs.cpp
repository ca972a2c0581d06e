#include "shell/qt/qt_dialogs.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QScreen>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <algorithm>

namespace kvr::window {
namespace {

QString qt(const std::string& text) {
  return QString::fromStdString(text);
}

void prepareFileDialog(QFileDialog& dialog, const platform::FileQuestion& question, bool save) {
  dialog.setObjectName(QStringLiteral("fileDialog"));
  dialog.setAcceptMode(save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
  // Qt's own questions on missing and existing files would block; they are asked here instead.
  dialog.setFileMode(QFileDialog::AnyFile);
  dialog.setOption(QFileDialog::DontConfirmOverwrite);
  dialog.setNameFilters(nameFiltersOf(question.filter));
  QFileInfo start(qt(question.initialFolder));
  if (!question.initialFolder.empty()) dialog.setDirectory(start.isDir() ? start.filePath() : start.path());
  // Only named, not selected in the list: the list is read later, and its selection then overwrites what was typed.
  auto* name = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
  if (!name || question.fileName.empty()) return;
  name->setText(QFileInfo(qt(question.fileName)).fileName());
  name->selectAll();
  if (auto* list = dialog.findChild<QAbstractItemView*>(QStringLiteral("listView"))) {
    const QSignalBlocker quiet(list->selectionModel());
    list->selectionModel()->clear();
  }
}

// A save under a filter of one kind gets that kind's ending: a name may have dots of its own ("Motor_v1.2").
QString withEnding(const QFileDialog& dialog, const QString& path) {
  const QString filter = dialog.selectedNameFilter();
  const qsizetype at = filter.lastIndexOf(QLatin1String("(*."));
  if (at < 0) return path;
  const QStringList endings =
      filter.mid(at + 1).section(QLatin1Char(')'), 0, 0).remove(QLatin1Char('*')).split(QLatin1Char(' '));
  const auto ends = [&](const QString& ending) { return path.endsWith(ending, Qt::CaseInsensitive); };
  if (std::any_of(endings.begin(), endings.end(), ends)) return path;
  return path + endings.first();
}

}  // namespace

QStringList nameFiltersOf(const std::string& filter) {
  QStringList filters;
  const QStringList parts = qt(filter).split(QLatin1Char('|'));
  for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
    const QString caption = parts[i].section(QLatin1Char('('), 0, 0).trimmed();
    QString patterns = parts[i + 1];
    patterns.replace(QLatin1Char(';'), QLatin1Char(' ')).replace(QLatin1String("*.*"), QLatin1String("*"));
    filters << (caption.isEmpty() ? QStringLiteral("Files") : caption) + QLatin1String(" (") + patterns +
                   QLatin1Char(')');
  }
  return filters.isEmpty() ? QStringList{QStringLiteral("All Files (*)")} : filters;
}

int QtDialogs::run(QDialog& dialog) {
  if (refusing_) return QDialog::Rejected;
  bool done = false;
  QObject::connect(&dialog, &QDialog::finished, &dialog, [&] {
    done = true;
    loop_.post([] {});  // the turn that waits for this shall end
  });
  open_.push_back(&dialog);
  dialog.open();
  while (!done) loop_.runOnce();
  std::erase(open_, &dialog);
  return dialog.result();
}

void QtDialogs::closeAll() {
  ++closings_;
  const auto open = open_;
  for (auto* dialog : open) dialog->reject();
}

void QtDialogs::refuse() {
  refusing_ = true;
  closeAll();
}

void QtDialogs::message(const std::string& title, const std::string& text, platform::BoxIcon icon) {
  QMessageBox box(window_);
  box.setObjectName(QStringLiteral("messageBox"));
  box.setIcon(icon == platform::BoxIcon::Warning ? QMessageBox::Warning : QMessageBox::Information);
  box.setWindowTitle(qt(title));
  box.setTextFormat(Qt::PlainText);
  box.setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  box.setText(qt(text));
  run(box);
}

bool QtDialogs::askYesNo(const std::string& title, const std::string& text) {
  QMessageBox box(window_);
  box.setObjectName(QStringLiteral("questionBox"));
  box.setIcon(QMessageBox::Question);
  box.setWindowTitle(qt(title));
  box.setTextFormat(Qt::PlainText);
  box.setText(qt(text));
  box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
  box.setDefaultButton(QMessageBox::No);
  box.setEscapeButton(QMessageBox::No);
  return run(box) == QMessageBox::Yes;
}

void QtDialogs::help(const std::string& title, const std::string& text) {
  auto* window = new QDialog(window_);
  window->setAttribute(Qt::WA_DeleteOnClose);
  window->setObjectName(QStringLiteral("helpWindow"));
  window->setWindowTitle(qt(title));
  auto* layout = new QVBoxLayout(window);
  auto* pane = new QPlainTextEdit(qt(text), window);
  pane->setObjectName(QStringLiteral("helpText"));
  pane->setAccessibleName(qt(title));
  pane->setReadOnly(true);
  pane->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  layout->addWidget(pane);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close | QDialogButtonBox::Help, window);
  buttons->button(QDialogButtonBox::Help)->setText(QStringLiteral("&Handbook"));
  QObject::connect(buttons, &QDialogButtonBox::helpRequested, window, openHandbook);
  QObject::connect(buttons, &QDialogButtonBox::rejected, window, &QDialog::reject);
  layout->addWidget(buttons);
  // As wide as the longest line, whose break was put there by hand.
  pane->ensurePolished();
  const QFontMetrics metrics(pane->font());
  const int margins = 2 * static_cast<int>(pane->document()->documentMargin()) + 2 * pane->frameWidth() +
                      pane->verticalScrollBar()->sizeHint().width() + layout->contentsMargins().left() +
                      layout->contentsMargins().right() + 4;
  const QSize wanted(metrics.size(0, qt(text)).width() + margins, metrics.height() * 28);
  window->resize(wanted.boundedTo(window->screen()->availableSize() * 9 / 10));
  window->show();
}

std::string QtDialogs::openFile(const platform::FileQuestion& question) {
  return askFile(question, false);
}
std::string QtDialogs::saveFile(const platform::FileQuestion& question) {
  return askFile(question, true);
}

std::string QtDialogs::askFile(const platform::FileQuestion& question, bool save) {
  platform::FileQuestion next = question;
  const int closings = closings_;
  while (closings == closings_) {
    QFileDialog dialog(window_, qt(question.title));
    prepareFileDialog(dialog, next, save);
    if (run(dialog) != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return {};
    QString path = dialog.selectedFiles().first();
    if (save) path = withEnding(dialog, path);
    const bool exists = QFileInfo(path).isFile();
    const std::string name = QFileInfo(path).fileName().toStdString();
    if (save && (!exists || askYesNo(question.title, name + " already exists.\nDo you want to replace it?")))
      return path.toStdString();
    if (!save && exists) return path.toStdString();
    if (!save) message(question.title, name + "\nFile not found.", platform::BoxIcon::Warning);
    next.initialFolder = path.toStdString();
    next.fileName = name;
  }
  return {};
}

void QtDialogs::beep() {
  QMetaObject::invokeMethod(
      qApp, [] { QApplication::beep(); }, Qt::QueuedConnection);
}

void QtDialogs::setBusy(bool busy) {
  if (busy == busy_) return;
  busy_ = busy;
  if (busy)
    QApplication::setOverrideCursor(Qt::WaitCursor);
  else
    QApplication::restoreOverrideCursor();
}

}  // namespace kvr::window
