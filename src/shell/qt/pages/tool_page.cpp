// The terminal: port settings above, what comes in and what goes out on the left, the strings of the round on the
// right. What is rarely changed is in popups, so that the pane keeps its height.
#include <QKeyEvent>
#include <QScrollArea>
#include <QTimer>
#include <array>

#include "shell/qt/flow_row.h"
#include "shell/qt/pages/pages.h"
#include "shell/qt/settings_popup.h"
#include "shell/qt/stacking.h"
#include "shell/qt/terminal_view.h"

namespace kvr::window {
namespace {

// A counter runs while bytes flow; a label of fixed size keeps the page from being laid out again each time.
QWidget* counter(const Maker& maker, platform::Label& control) {
  auto* label = maker.label(control);
  const QString widest = qtText(control.caption()) + QStringLiteral("000000000");
  label->setFixedSize(label->fontMetrics().horizontalAdvance(widest) + 4, label->sizeHint().height());
  return label;
}

using comtool::ToolPanel;

// What makes one string's line: its text, its form, its button.
QWidget* stringList(const Maker& maker) {
  auto& p = maker.form.tool;
  auto* inner = new QWidget;
  auto* grid = new QGridLayout(inner);
  grid->setContentsMargins(2, 2, 2, 2);
  grid->setVerticalSpacing(1);
  for (std::size_t i = 0; i < ToolPanel::kStrings; ++i) {
    const int line = static_cast<int>(i);
    const QString of = QStringLiteral("string %1").arg(line + 1);
    auto* send = maker.button(p.comSpreadSendCom[i], 0, QStringLiteral("Send ") + of);
    send->setFixedWidth(send->fontMetrics().averageCharWidth() * 6);
    grid->addWidget(maker.check(p.cheSpreadHex[i], 0, QStringLiteral("HEX: ") + of), line, 0);
    grid->addWidget(maker.line(p.texSpreadSend[i], QStringLiteral("Text of ") + of), line, 1);
    grid->addWidget(send, line, 2);
  }
  grid->setColumnStretch(1, 1);
  auto* list = scrolling(inner);
  list->setAccessibleName(QStringLiteral("Strings to send"));
  return list;
}

QGroupBox* stringsPane(const Maker& maker) {
  auto& p = maker.form.tool;
  auto* column = new QVBoxLayout;
  column->setContentsMargins(4, 2, 4, 4);
  column->addWidget(stringList(maker), 1);
  column->addLayout(row(
      {maker.button(p.comSpreadAutoSend), maker.label(p.labSpreadSendCycle[0]),
       maker.line(p.texSpreadSendCycle, QStringLiteral("Interval between the strings of the round, milliseconds"), 6),
       maker.label(p.labSpreadSendCycle[1]), nullptr}));
  auto* frame = makeFrame(maker.loop(), p.Frame24);
  frame->setLayout(column);
  return frame;
}

// A caption and its box on a line of a popup.
void addLine(QGridLayout& grid, QWidget* caption, QWidget* box, QWidget* after = nullptr) {
  const int line = grid.rowCount();
  grid.addWidget(caption, line, 0);
  grid.addWidget(box, line, 1);
  if (after) grid.addWidget(after, line, 2);
}
void addWide(QGridLayout& grid, QWidget* widget) {
  grid.addWidget(widget, grid.rowCount(), 0, 1, 3);
}

QPushButton* lineSettings(const Maker& maker) {
  auto& p = maker.form.tool;
  auto* grid = new QGridLayout;
  const auto choice = [&](std::size_t i, platform::ComboBox& control, const char* name) {
    addLine(*grid, maker.label(p.labDebugPort[i]),
            maker.combo(control, QLatin1String(name) + QStringLiteral(" of the terminal")));
  };
  choice(2, p.com_Debug_DataBits, "Data bits");
  choice(3, p.com_Debug_ParityCheck, "Parity");
  choice(4, p.com_Debug_StopBits, "Stop bits");
  addLine(*grid, captionFor(QStringLiteral("Flow")), maker.combo(p.comb_Flow, QStringLiteral("Flow control")));
  addLine(*grid, maker.check(p.che_DTR), maker.check(p.che_RTS), maker.button(p.comBreak));
  addWide(*grid, maker.check(p.che_Reopen));
  addWide(*grid, maker.check(p.che_AutoOpenPort));
  return popupButton(QStringLiteral("Line..."), QStringLiteral("Line settings: data bits, flow control, DTR, break"),
                     grid);
}

QWidget* inputLines(const Maker& maker) {
  auto& p = maker.form.tool;
  auto* lines = new QWidget;
  auto* layout = row({});
  layout->setSpacing(2);
  for (std::size_t i = 0; i < p.imgLine.size(); ++i) {
    auto* lamp = makeLamp(maker.loop(), p.imgLine[i],
                          qtText(p.labLine[i].caption()) + QStringLiteral(", set by the other side"));
    lamp->setFocusPolicy(Qt::NoFocus);  // only to be read
    layout->addWidget(lamp);
    layout->addWidget(maker.label(p.labLine[i]));
  }
  lines->setLayout(layout);
  lines->setToolTip(QStringLiteral("Lines that the other side sets; grey where the adapter has none"));
  return lines;
}

QLayout* portRow(const Maker& maker) {
  auto& p = maker.form.tool;
  return flow({makeLamp(maker.loop(), p.imgOpen[0], QStringLiteral("The terminal's port is open")),
               maker.button(p.comOpenCOM[0]),
               together(maker.label(p.labDebugPort[0]),
                        maker.portBox(p.com_Debug_COM, QStringLiteral("Serial port of the terminal"))),
               together(maker.label(p.labDebugPort[1]),
                        maker.combo(p.com_Debug_Baud, QStringLiteral("Baud rate of the terminal"))),
               lineSettings(maker), inputLines(maker), maker.check(p.che_Log),
               maker.button(p.comDebugHelp[0], 0, QStringLiteral("Help on the terminal"))});
}

QWidget* heading(const char* text) {
  auto* label = captionFor(QString::fromLatin1(text));
  QFont bold = label->font();
  bold.setBold(true);
  label->setFont(bold);
  return label;
}

void addDisplay(const Maker& maker, QGridLayout& grid) {
  auto& p = maker.form.tool;
  addWide(grid, heading("Display"));
  addLine(grid, captionFor(QStringLiteral("Encoding")),
          maker.combo(p.comb_Encoding, QStringLiteral("Encoding of the text")));
  addWide(grid, maker.check(p.che_KeepNewest));
  addWide(grid, maker.check(p.che_Escapes));
  addWide(grid, maker.check(p.che_LocalEcho));
  addLine(grid, maker.check(p.che_HexLines),
          together(maker.line(p.txtHexSilence, QStringLiteral("Silence before a new line, milliseconds"), 6),
                   maker.label(p.labHexSilence)));
}

void addLog(const Maker& maker, QGridLayout& grid) {
  auto& p = maker.form.tool;
  addWide(grid, heading("Log"));
  addLine(grid, captionFor(QStringLiteral("Content")), maker.combo(p.comb_LogForm, QStringLiteral("What is logged")));
  addLine(grid, maker.label(p.labLogBox[0]), maker.line(p.txtLogFile, QStringLiteral("File of the log")),
          maker.button(p.comLogFile));
  addLine(grid, maker.label(p.labLogBox[1]), maker.line(p.txtLogSize, QStringLiteral("Size of one log file, MB"), 6));
  addLine(grid, maker.label(p.labLogBox[2]), maker.line(p.txtLogFiles, QStringLiteral("Log files that are kept"), 6));
}

void addPaste(const Maker& maker, QGridLayout& grid) {
  auto& p = maker.form.tool;
  addWide(grid, heading("Paste"));
  addLine(grid, maker.label(p.labPasteBox[0]),
          together(maker.line(p.txtPasteChar, QStringLiteral("Pause after each pasted character, milliseconds"), 6),
                   captionFor(QStringLiteral("ms"))));
  addLine(grid, maker.label(p.labPasteBox[1]),
          together(maker.line(p.txtPasteLine, QStringLiteral("Pause after each pasted line, milliseconds"), 6),
                   captionFor(QStringLiteral("ms"))));
}

QPushButton* paneSettings(const Maker& maker) {
  auto* grid = new QGridLayout;
  addDisplay(maker, *grid);
  addLog(maker, *grid);
  addPaste(maker, *grid);
  grid->setColumnMinimumWidth(1, 220);
  return popupButton(QStringLiteral("Settings..."), QStringLiteral("Encoding, escape sequences, echo, log, paste"),
                     grid);
}

// What there is to say; takes no room while there is nothing.
QLayout* statusRow(const Maker& maker) {
  auto& p = maker.form.tool;
  auto* bar = makeProgress(maker.loop(), p.barPaste, QStringLiteral("Progress of the paste"));
  bar->setMaximumWidth(160);
  return flow({bar, maker.button(p.comPasteStop), maker.label(p.labFind), maker.label(p.labPort),
               maker.label(p.labPaste), maker.label(p.labLog)});
}

void showLines(QWidget& view, int lines) {
  view.setMinimumHeight(view.fontMetrics().height() * lines);
}

QGroupBox* receivePane(const Maker& maker) {
  auto& p = maker.form.tool;
  auto* column = new QVBoxLayout;
  column->setContentsMargins(4, 2, 4, 4);
  column->setSpacing(2);
  column->addLayout(flow({maker.option(p.optReceiveHex[0], QStringLiteral("Show what comes in as text")),
                          maker.option(p.optReceiveHex[1], QStringLiteral("Show what comes in in hexadecimal")),
                          maker.combo(p.comb_TimeStamp, QStringLiteral("Time stamp")), maker.check(p.che_AutoScroll),
                          paneSettings(maker)}));
  auto* view = makeTerminalView(maker.loop(), p);
  showLines(*view, 6);
  column->addWidget(view, 1);
  column->addLayout(statusRow(maker));
  column->addLayout(
      flow({counter(maker, p.labReceiveCount), counter(maker, p.labSendCount), maker.button(p.comDebugClear[0])}));
  auto* find = maker.line(p.texFind, QStringLiteral("Text to find in the receive pane"));
  find->setPlaceholderText(QStringLiteral("Find"));
  auto* search = flow({find, maker.button(p.comFindNext), maker.button(p.comFindPrevious),
                       maker.button(p.comSaveReceive), maker.button(p.comClearCount)});
  search->grow(find);
  column->addLayout(search);
  auto* frame = makeFrame(maker.loop(), p.frmReceive);
  frame->setLayout(column);
  return frame;
}

// Enter sends; the arrow keys bring back what was sent before.
class SendKeys : public QObject {
 public:
  SendKeys(QLineEdit& line, platform::EventLoop& loop, ToolPanel& panel) : QObject(&line), loop_(loop), panel_(panel) {
    line.installEventFilter(this);
  }

 protected:
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() != QEvent::KeyPress) return false;
    const auto& key = *static_cast<QKeyEvent*>(event);
    if (key.modifiers() & ~Qt::KeypadModifier) return false;
    platform::Button* pressed = key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter ? &panel_.comDebugSend
                                : key.key() == Qt::Key_Up                                 ? &panel_.comSendOlder
                                : key.key() == Qt::Key_Down                               ? &panel_.comSendNewer
                                                                                          : nullptr;
    if (pressed) loop_.post([pressed] { pressed->press(); });
    return pressed != nullptr;
  }

 private:
  platform::EventLoop& loop_;
  ToolPanel& panel_;
};

QGroupBox* sendPane(const Maker& maker) {
  auto& p = maker.form.tool;
  auto* column = new QVBoxLayout;
  column->setContentsMargins(4, 2, 4, 4);
  column->setSpacing(2);
  auto* text = maker.line(p.texSend, QStringLiteral("Text to send"));
  new SendKeys(*text, maker.loop(), p);
  column->addLayout(row(
      {text, maker.button(p.comDebugSend), maker.button(p.comClearSend, 0, QStringLiteral("Clear the text to send"))}));
  auto* interval = new QWidget;
  interval->setLayout(row({maker.button(p.comAutoSend), maker.label(p.labSendCycle[0]),
                           maker.line(p.texSendCycle, QStringLiteral("Interval of the repeated send, milliseconds"), 6),
                           maker.label(p.labSendCycle[1])}));
  auto* form = flow({maker.option(p.optHexSend[0], QStringLiteral("Send as text")),
                     maker.option(p.optHexSend[1], QStringLiteral("Send as hexadecimal bytes")),
                     maker.combo(p.comb_LineEnd, QStringLiteral("Line end added to a text")), interval,
                     maker.button(p.comPaste)});
  form->setSpacing(4);
  column->addLayout(form);
  auto* frame = makeFrame(maker.loop(), p.frmSend);
  frame->setLayout(column);
  return frame;
}

// The pane above the send line, as high at least as their rows are at this width; a splitter does not ask for that.
class TerminalColumn : public QWidget {
 public:
  TerminalColumn(QWidget* receive, QWidget* send) : parts_{receive, send} {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(2);
    column->addWidget(receive, 1);
    column->addWidget(send);
  }
  QSize minimumSizeHint() const override {
    const QSize least = layout()->minimumSize();
    int height = layout()->spacing();
    for (const QWidget* part : parts_) height += part->layout()->totalMinimumHeightForWidth(width());
    return {least.width(), std::max(least.height(), height)};
  }

 protected:
  void resizeEvent(QResizeEvent* event) override {
    QWidget::resizeEvent(event);
    if (event->size().width() != event->oldSize().width()) updateGeometry();
  }

 private:
  std::array<QWidget*, 2> parts_;
};

// Tells the form of the width at the end of a drag; on the way it changes with every move of the mouse.
class DragEnd : public QObject {
 public:
  DragEnd(QSplitter& halves, shell::MainForm& form) : QObject(&halves), halves_(halves), form_(form) {}

 protected:
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == QEvent::MouseButtonRelease && halves_.orientation() == Qt::Horizontal)
      form_.world.loop.post([&form = form_, twips = halves_.sizes().at(1) * 15] { form.splitterMoved(twips); });
    return false;
  }

 private:
  QSplitter& halves_;
  shell::MainForm& form_;
};

// The width of the strings is the form's to keep; 15 twips to a pixel. In a narrow page they are below the pane, which
// keeps its lines: the page scrolls.
void followWidth(const Maker& maker, StackingSplitter& halves, QWidget& view) {
  auto& form = maker.form;
  halves.setStretchFactor(0, 1);
  halves.setStretchFactor(1, 0);
  const auto share = [&halves, &form] {
    if (halves.orientation() == Qt::Vertical) return;
    const int strings = form.main.tabWidth / 15;
    halves.setSizes({std::max(halves.width() - strings, 1), strings});
  };
  QTimer::singleShot(0, &halves, share);  // once the page has its width
  halves.turned = [&view, share](bool stacked) {
    showLines(view, stacked ? 12 : 6);
    share();
  };
  halves.handle(1)->installEventFilter(new DragEnd(halves, form));
}

}  // namespace

QWidget* makeToolPage(const Maker& maker) {
  auto& p = maker.form.tool;
  auto* left = new TerminalColumn(receivePane(maker), sendPane(maker));
  auto* halves = new StackingSplitter(75);
  halves->setObjectName(QStringLiteral("ImgSplitter"));
  halves->setChildrenCollapsible(false);
  halves->addWidget(left);
  halves->addWidget(stringsPane(maker));
  followWidth(maker, *halves, *left->findChild<QWidget*>(objectNameOf(p.texReceive)));
  auto* whole = new QVBoxLayout;
  whole->setSpacing(3);
  whole->addLayout(portRow(maker));
  whole->addWidget(halves, 1);
  auto* frame = makeFrame(maker.loop(), p.fraDebug);
  whole->setContentsMargins(6, 2, 6, 4);
  frame->setLayout(whole);
  return frame;
}

}  // namespace kvr::window
