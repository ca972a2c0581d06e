#include "shell/qt/main_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QMimeData>
#include <QScreen>
#include <QShortcut>

#include "platform/qt/raw_names.h"
#include "shell/qt/left_column.h"
#include "shell/qt/pages/pages.h"
#include "shell/qt/window_place.h"

namespace kvr::window {
namespace {

// A tab strip with its pages below it.
QVBoxLayout* tabbed(const Maker& maker, platform::TabStrip& strip, std::map<std::string, PageStack::Builder> pages,
                    const QString& name) {
  auto* column = new QVBoxLayout;
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(makeTabs(maker.loop(), strip, name));
  column->addWidget(new PageStack(strip, std::move(pages)), 1);
  return column;
}

}  // namespace

MainWindow::MainWindow(shell::MainForm& form, PortWatch& ports, QtDialogs& dialogs, std::function<void()> gone)
    : maker_{form, ports}, dialogs_(dialogs), gone_(std::move(gone)) {
  setObjectName(QStringLiteral("mainWindow"));
  setWindowTitle(QString::fromLatin1(shell::MainForm::kCaption));
  setAcceptDrops(true);
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(2, 2, 2, 2);
  halves_ = new QSplitter(Qt::Horizontal);
  halves_->setChildrenCollapsible(false);
  left_ = makeLeftColumn(maker_, *this);
  halves_->addWidget(left_);
  halves_->addWidget(rightSide());
  halves_->setStretchFactor(0, 0);
  halves_->setStretchFactor(1, 1);
  layout->addWidget(halves_);
  dialogs_.setParent(this);
  form.onUnload = [this] { finish(); };
  tokens_.push_back(form.shrinkChanged.watch([this] { followShrink(); }));
  tokens_.push_back(ports.changed.watch([this] { followPort(); }));
  tokens_.push_back(form.main.combCommPort.changed.watch([this] { followPort(); }));
}

MainWindow::~MainWindow() {
  maker_.form.onUnload = {};
}

QWidget* MainWindow::rightSide() {
  auto& panel = maker_.form.main;
  auto* upper = new QWidget;
  upper->setLayout(
      tabbed(maker_, panel.TabStrip2, upperPages(maker_), QStringLiteral("Buffers, terminal, project, registers")));
  auto* lower = makeFrame(maker_.loop(), panel.FrameX[3]);
  lower->setLayout(
      tabbed(maker_, panel.TabStrip1, lowerPages(maker_), QStringLiteral("Options and other ways to program")));
  lower->layout()->setContentsMargins(4, 2, 4, 4);
  auto* split = new QSplitter(Qt::Vertical);
  split->setObjectName(QStringLiteral("rightSplitter"));
  split->setChildrenCollapsible(false);
  split->addWidget(upper);
  split->addWidget(lower);
  split->setStretchFactor(0, 1);
  split->setStretchFactor(1, 1);
  return split;
}

void MainWindow::restorePlace() {
  placeWindow(*this, maker_.form.windowPlace());
}

// The right edge stays where it is, so the working pages do not move under the operator's eyes.
void MainWindow::followShrink() {
  if (shrunk_ == maker_.form.shrunk()) return;
  shrunk_ = maker_.form.shrunk();
  if (shrunk_) shrunkBy_ = left_->width() + halves_->handleWidth();
  place_ = isMaximized() || isFullScreen() ? normalGeometry() : geometry();
  left_->setVisible(!shrunk_);
  fitToColumn();
}

// A maximised window keeps its place; it is fitted when it goes back to its own size.
void MainWindow::fitToColumn() {
  if (isMaximized() || isFullScreen() || fitted_ == shrunk_) return;
  fitted_ = shrunk_;
  QRect place = place_;
  QCoreApplication::sendPostedEvents(halves_, QEvent::LayoutRequest);  // the window's least width is another one now
  layout()->activate();
  place.setLeft(place.left() + (shrunk_ ? shrunkBy_ : -shrunkBy_));
  setGeometry(place);
}

// Until an open tells more, the line under the port box says what the number stands for.
void MainWindow::followPort() {
  const int number = maker_.form.main.combCommPort.listIndex() + 1;
  const std::string device = maker_.ports.ports().describe(number);
  if (number < 1 || maker_.form.activity.busy()) return;
  maker_.form.main.portStatus.setCaption(device.empty() ? "COM" + std::to_string(number) + ": no device found"
                                                        : device);
}

// The form decides: a first request asks a run to end and the window goes when it has.
void MainWindow::closeEvent(QCloseEvent* event) {
  if (mayClose_) return event->accept();
  event->ignore();
  dialogs_.refuse();
  maker_.loop().post([this] {
    if (maker_.form.queryUnload()) return;
    maker_.form.unload();
  });
}

void MainWindow::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() != QEvent::WindowStateChange || fitted_ == shrunk_) return;
  QMetaObject::invokeMethod(this, &MainWindow::fitToColumn, Qt::QueuedConnection);
}

void MainWindow::finish() {
  if (mayClose_) return;
  mayClose_ = true;
  if (shrunk_) maker_.form.shrinkOrResume();  // the button may be locked
  maker_.form.saveWindowPlace(placeOf(*this));
  dialogs_.refuse();
  close();
  if (gone_) gone_();
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
  const auto urls = event->mimeData()->urls();
  if (urls.size() == 1 && urls.first().isLocalFile() && !maker_.form.activity.busy()) event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* event) {
  event->acceptProposedAction();
  const std::string path = platform::rawPathOf(event->mimeData()->urls().first());
  maker_.loop().post([this, path] { maker_.form.openDropped(path); });
}

}  // namespace kvr::window
