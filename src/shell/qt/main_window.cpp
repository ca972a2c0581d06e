#include "shell/qt/main_window.h"

#include <QAccessibleWidget>
#include <QApplication>
#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QMimeData>
#include <QShortcut>
#include <QToolButton>

#include "platform/qt/raw_names.h"
#include "shell/handbook_chapters.h"
#include "shell/qt/last_run_window.h"
#include "shell/qt/left_column.h"
#include "shell/qt/pages/pages.h"
#include "shell/qt/run_strip.h"
#include "shell/qt/window_place.h"

namespace kvr::window {
namespace {

// To assistive programs a window; Qt takes every plain widget for a container.
QAccessibleInterface* accessibleWindow(const QString&, QObject* object) {
  auto* window = dynamic_cast<MainWindow*>(object);
  return window ? new QAccessibleWidget(window, QAccessible::Window) : nullptr;
}

// A tab strip with its pages below it; `corner`: buttons at the end of the tabs.
QVBoxLayout* tabbed(const Maker& maker, platform::TabStrip& strip, std::map<std::string, PageStack::Builder> pages,
                    const QString& name, std::initializer_list<QWidget*> corner = {}) {
  auto* column = new QVBoxLayout;
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  auto* tabs = makeTabs(maker.loop(), strip, name);
  auto* head = row({tabs});
  head->setStretch(0, 1);
  for (QWidget* button : corner) head->addWidget(button);
  column->addLayout(head);
  column->addWidget(new PageStack(strip, std::move(pages)), 1);
  return column;
}

}  // namespace

MainWindow::MainWindow(shell::MainForm& form, PortWatch& ports, QtDialogs& dialogs, platform::Handbook& handbook,
                       std::function<void()> gone)
    : maker_{form, ports}, dialogs_(dialogs), handbook_(handbook), gone_(std::move(gone)) {
  [[maybe_unused]] static const bool known = (QAccessible::installFactory(accessibleWindow), true);
  setObjectName(QStringLiteral("mainWindow"));
  setWindowTitle(QString::fromLatin1(shell::MainForm::kCaption));
  setAcceptDrops(true);
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(2, 2, 2, 2);
  halves_ = new QSplitter(Qt::Horizontal);
  halves_->setChildrenCollapsible(false);
  left_ = makeLeftColumn(maker_, *this);
  halves_->addWidget(left_);
  right_ = rightSide();
  halves_->addWidget(right_);
  halves_->setStretchFactor(0, 0);
  halves_->setStretchFactor(1, 1);
  layout->addWidget(halves_);
  dialogs_.setParent(this);
  dialogs_.openHandbook = [this] { openHandbook(); };
  connect(new QShortcut(QKeySequence::HelpContents, this), &QShortcut::activated, this, &MainWindow::openHandbook);
  form.onUnload = [this] { finish(); };
  tokens_.push_back(form.shrinkChanged.watch([this] { followShrink(); }));
  tokens_.push_back(form.lastRunAsked.watch([this] { showLastRun(maker_.form, *this); }));
  tokens_.push_back(ports.changed.watch([this] { maker_.form.portLine.follow(); }));
}

MainWindow::~MainWindow() {
  maker_.form.onUnload = {};
}

// The chapter of the page that the user is at.
void MainWindow::openHandbook() {
  const auto& panel = maker_.form.main;
  const QWidget* focus = focusWidget();
  const bool below = focus && lower_->isAncestorOf(focus);
  const auto& tabs = below ? panel.TabStrip1 : panel.TabStrip2;
  const bool onPage = focus && right_->isAncestorOf(focus);
  const auto chapter = shell::chapterOf(onPage ? tabs.selectedKey() : std::string());
  if (!handbook_.open(chapter))
    dialogs_.help("Handbook", "The handbook cannot be opened. Its first page is\n\n" + handbook_.firstPage() +
                                  "\n\nIs it there, and is there a program for web pages?");
}

QWidget* MainWindow::handbookButton() {
  auto* button = new QToolButton;
  button->setObjectName(QStringLiteral("handbook"));
  button->setText(QStringLiteral("?"));
  button->setAccessibleName(QStringLiteral("Handbook"));
  button->setToolTip(QStringLiteral("Open the handbook; F1 opens the chapter of the page that you are at"));
  button->setFocusPolicy(Qt::NoFocus);  // where the user is says which chapter is meant
  connect(button, &QToolButton::clicked, this, &MainWindow::openHandbook);
  return button;
}

QWidget* MainWindow::rightSide() {
  auto& panel = maker_.form.main;
  auto* upper = new QWidget;
  upper->setLayout(tabbed(maker_, panel.TabStrip2, upperPages(maker_),
                          QStringLiteral("Buffers, terminal, project, registers"),
                          {maker_.button(panel.comMastWindow), handbookButton()}));
  auto* lower = makeFrame(maker_.loop(), panel.FrameX[3]);
  lower_ = lower;
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
  auto* side = new QWidget;
  auto* column = new QVBoxLayout(side);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(2);
  column->addWidget(split, 1);
  return side;
}

void MainWindow::restorePlace() {
  placeWindow(*this, maker_.form.windowPlace());
}

// The right edge stays where it is, so the working pages do not move under the user's eyes.
void MainWindow::followShrink() {
  if (shrunk_ == maker_.form.shrunk()) return;
  shrunk_ = maker_.form.shrunk();
  if (shrunk_) shrunkBy_ = left_->width() + halves_->handleWidth();
  place_ = isMaximized() || isFullScreen() ? normalGeometry() : geometry();
  left_->setVisible(!shrunk_);
  showStrip();
  fitToColumn();
}

// What a run needs, while the column that holds it is hidden.
void MainWindow::showStrip() {
  if (!strip_) {
    strip_ = makeRunStrip(maker_);
    static_cast<QVBoxLayout*>(right_->layout())->insertWidget(0, strip_);
  }
  strip_->setVisible(shrunk_);
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
