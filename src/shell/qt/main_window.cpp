#include "shell/qt/main_window.h"

#include <QAccessibleWidget>
#include <QApplication>
#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QMimeData>
#include <QScreen>
#include <QScrollArea>
#include <QShortcut>
#include <QToolButton>
#include <QWindow>
#include <algorithm>
#include <utility>

#include "platform/qt/raw_names.h"
#include "shell/handbook_chapters.h"
#include "shell/qt/last_run_window.h"
#include "shell/qt/left_column.h"
#include "shell/qt/pages/pages.h"
#include "shell/qt/run_strip.h"
#include "shell/qt/window_place.h"

namespace kvr::window {
namespace {

// To assistive programs a window, and a page that scrolls a pane; Qt takes both for containers without a meaning.
QAccessibleInterface* accessibleWindow(const QString&, QObject* object) {
  if (auto* area = qobject_cast<QScrollArea*>(object)) return new QAccessibleWidget(area, QAccessible::Pane);
  auto* window = dynamic_cast<MainWindow*>(object);
  return window ? new QAccessibleWidget(window, QAccessible::Window) : nullptr;
}

}  // namespace

MainWindow::MainWindow(shell::MainForm& form, PortWatch& ports, QtDialogs& dialogs, platform::Handbook& handbook,
                       std::function<void()> gone)
    : maker_{form, ports}, dialogs_(dialogs), handbook_(handbook), gone_(std::move(gone)) {
  [[maybe_unused]] static const bool known = (QAccessible::installFactory(accessibleWindow), true);
  setObjectName(QStringLiteral("mainWindow"));
  setWindowTitle(QString::fromLatin1(shell::MainForm::kCaption));
  setAcceptDrops(true);
  form.areas.screenIs(screen()->geometry().height());
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
  connect(halves_, &QSplitter::splitterMoved, this, [this] { dragged_ = true; });
  layout->addWidget(halves_);
  dialogs_.setParent(this);
  dialogs_.openHandbook = [this] { openHandbook(); };
  connect(new QShortcut(QKeySequence::HelpContents, this), &QShortcut::activated, this, &MainWindow::openHandbook);
  connect(new QShortcut(Qt::Key_F11, this), &QShortcut::activated, this, &MainWindow::toggleHeight);
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
  const auto& tabs = pages_->areaOf(focus) == shell::Area::Lower ? panel.TabStrip1 : panel.TabStrip2;
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
  pages_ = new RightSide(maker_, {maker_.button(maker_.form.main.comMastWindow), handbookButton()});
  auto* side = new QWidget;
  auto* column = new QVBoxLayout(side);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(2);
  column->addWidget(pages_, 1);
  return side;
}

// The height of the area that the user is at.
void MainWindow::toggleHeight() {
  auto area = pages_->areaOf(focusWidget());
  if (!pages_->isAncestorOf(focusWidget()) && maker_.form.areas.heights() == shell::Heights::Lower)
    area = shell::Area::Lower;
  maker_.loop().post([&room = maker_.form.areas, area] { room.toggle(area); });
}

void MainWindow::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  if (screen_) return;
  screen_ = windowHandle();
  const auto tell = [this] { maker_.form.areas.screenIs(screen()->geometry().height()); };
  connect(screen_, &QWindow::screenChanged, this, tell);
  for (const QScreen* one : QGuiApplication::screens()) connect(one, &QScreen::geometryChanged, this, tell);
  tell();
}

// Where the window is too narrow for both halves, the left one gives first. What the user has dragged stays.
void MainWindow::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  if (dragged_ || !left_->isVisibleTo(this) || !right_->isVisibleTo(this)) return;
  const int all = halves_->width() - halves_->handleWidth();
  const int least = left_->minimumSizeHint().width();
  const int wish = std::max(right_->sizeHint().width(), fontMetrics().averageCharWidth() * 110);
  const int left = std::clamp(all - wish, least, std::max(least, left_->sizeHint().width()));
  halves_->setSizes({left, all - left});
}

void MainWindow::restorePlace() {
  placeWindow(*this, maker_.form.windowPlace());
}

MainWindow::Shape MainWindow::wanted() const {
  if (!maker_.form.shrunk()) return Shape::Whole;
  return maker_.form.main.cheStripOnly.value() ? Shape::Strip : Shape::Narrow;
}

// The right edge stays where it is, so the working pages do not move under the user's eyes.
void MainWindow::followShrink() {
  if (shape_ == wanted()) return;
  if (shape_ == Shape::Whole) shrunkBy_ = left_->width() + halves_->handleWidth();
  shape_ = wanted();
  place_ = isMaximized() || isFullScreen() ? normalGeometry() : geometry();
  left_->setVisible(shape_ == Shape::Whole);
  pages_->setVisible(shape_ != Shape::Strip);
  showStrip();
  // In a corner of the screen it would be lost under the window that the user works in.
  if (windowHandle()) windowHandle()->setFlag(Qt::WindowStaysOnTopHint, shape_ == Shape::Strip);
  fit();
}

// What a run needs, while the column that holds it is hidden.
void MainWindow::showStrip() {
  if (!strip_) {
    if (shape_ == Shape::Whole) return;
    strip_ = makeRunStrip(maker_);
    static_cast<QVBoxLayout*>(right_->layout())->insertWidget(0, strip_);
    // After the strip's own parts, whose size it takes.
    tokens_.push_back(maker_.form.main.cheStripOnly.changed.watch([this] { followShrink(); }));
  }
  strip_->setVisible(shape_ != Shape::Whole);
}

// Where the user put it the last time; at first the corner where the window was.
QRect MainWindow::stripPlace(const QRect& narrow) const {
  const QSize size = minimumSizeHint();
  QRect place(strip_place_.isEmpty() ? narrow.topLeft() : strip_place_.topLeft(), size);
  if (strip_place_.isEmpty()) place.moveRight(narrow.right());
  return place;
}

// A maximised window keeps its place; it is fitted when it goes back to its own size. The strip has its own size.
void MainWindow::fit() {
  const Shape wish = wanted();
  if (isMaximized() || isFullScreen()) {
    if (wish != Shape::Strip) return;
    maximised_ = true;
    return showNormal();
  }
  if (fitted_ == wish) return;
  // The window's least size is another one now.
  for (const QWidget* inner : {strip_, right_}) inner->layout()->activate();
  QCoreApplication::sendPostedEvents(halves_, QEvent::LayoutRequest);
  layout()->activate();
  if (fitted_ == Shape::Strip) strip_place_ = place_;
  if (fitted_ == Shape::Narrow) narrow_ = place_;
  if (fitted_ == Shape::Whole) narrow_ = place_.adjusted(shrunkBy_, 0, 0, 0);
  fitted_ = wish;
  setGeometry(wish == Shape::Strip    ? stripPlace(narrow_)
              : wish == Shape::Narrow ? narrow_
                                      : narrow_.adjusted(-shrunkBy_, 0, 0, 0));
  if (wish != Shape::Strip && std::exchange(maximised_, false) && !mayClose_) showMaximized();
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
  if (event->type() != QEvent::WindowStateChange || fitted_ == shape_) return;
  QMetaObject::invokeMethod(this, &MainWindow::fit, Qt::QueuedConnection);
}

void MainWindow::finish() {
  if (mayClose_) return;
  mayClose_ = true;
  if (shape_ != Shape::Whole) maker_.form.shrinkOrResume();  // the button may be locked
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
