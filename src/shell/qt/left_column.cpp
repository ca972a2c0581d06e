#include "shell/qt/left_column.h"

#include <QFileInfo>
#include <QScrollArea>
#include <QScrollBar>

#include "shell/qt/flow_row.h"
#include "shell/qt/model_box.h"
#include "shell/qt/recent_button.h"
#include "shell/qt/verdict_view.h"

namespace kvr::window {
namespace {

QGroupBox* step(const Maker& maker, int index, QLayout* layout) {
  auto* frame = makeFrame(maker.loop(), maker.form.main.FrameX[static_cast<std::size_t>(index)]);
  layout->setContentsMargins(5, 4, 5, 6);
  frame->setLayout(layout);
  return frame;
}

// Large and heavy, for gloves; its share of the row says which button is meant first.
void enlarge(QPushButton& button, double lines, double scale) {
  QFont font = button.font();
  font.setPointSizeF(font.pointSizeF() * scale);
  font.setBold(true);
  button.setFont(font);
  button.setMinimumHeight(static_cast<int>(button.fontMetrics().height() * lines));
  button.setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

// One end of the addresses that the chip has for the application.
QLabel* rangeEnd(const Maker& maker, platform::Label& control, const QString& meaning) {
  auto* label = maker.label(control);
  label->setToolTip(meaning + QStringLiteral("hexadecimal, of what the selected model has for the application"));
  follow(label, control, [label, &control, meaning] { label->setAccessibleName(meaning + qtText(control.caption())); });
  return label;
}

QGroupBox* stepModel(const Maker& maker, QWidget& window) {
  auto& images = maker.form.images.panel;
  auto* box = makeModelBox(maker.form, window);
  auto* open = maker.button(maker.form.main.Command3, 0, QStringLiteral("Choose the model"));
  open->setFixedWidth(open->fontMetrics().averageCharWidth() * 6);
  auto* line = row({captionFor(QStringLiteral("&Model"), box), box, open, captionFor(QStringLiteral("Range")),
                    rangeEnd(maker, images.LabISP_reange[0], QStringLiteral("First address of the code: ")),
                    rangeEnd(maker, images.LabISP_reange[1], QStringLiteral("Last address of the code: "))});
  line->setStretch(1, 1);
  return step(maker, 0, line);
}

// A file's name may hold a line end.
QString oneLine(QString text) {
  for (QChar& c : text)
    if (!c.isPrint()) c = QChar::ReplacementCharacter;
  return text;
}

// A line that is cut at the column's width; the whole of it is a tool tip.
class Note : public QLabel {
 public:
  explicit Note(const QString& name) {
    setObjectName(name);
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  }
  void showNote(const QString& words, const QString& tip) {
    words_ = oneLine(words);
    setAccessibleName(words_);
    fit();
    setPlainTip(*this, tip);
  }

 protected:
  void resizeEvent(QResizeEvent* event) override {
    QLabel::resizeEvent(event);
    fit();
  }

 private:
  void fit() { setText(fontMetrics().elidedText(words_, Qt::ElideRight, width())); }
  QString words_;
};

constexpr QChar kWarning(0x26A0);

// What file an image is from and what it is. A single line has to do for an image that few models take: there the
// warnings go before the facts.
class FileNote : public Note {
 public:
  enum class Shows { Facts, WarningsFirst };
  FileNote(const QString& name, const images::ImageSlot& slot, Shows shows) : Note(name) {
    const auto show = [this, &slot, shows] {
      const QString path = qtText(slot.frame.caption()).section(QLatin1Char(':'), 1).trimmed();
      const QString warnings = qtText(slot.warnings.caption());
      const bool warns = shows == Shows::WarningsFirst && !warnings.isEmpty();
      const QString details = warns ? kWarning + QLatin1Char(' ') + warnings : qtText(slot.facts.caption());
      const QString file = path.isEmpty() ? QStringLiteral("no file") : QFileInfo(path).fileName();
      QString tip = oneLine(path);
      for (const platform::Label* label : {&slot.facts, &slot.info, &slot.warnings})
        if (!label->caption().empty()) tip += QLatin1Char('\n') + qtText(label->caption());
      showNote(details.isEmpty() ? file : file + QLatin1String("   ") + details, tip);
    };
    tokens_ = {slot.frame.changed.watch(show), slot.info.changed.watch(show), slot.facts.changed.watch(show),
               slot.warnings.changed.watch(show)};
    show();
  }

 private:
  std::vector<platform::Signal::Token> tokens_;
};

// The line below it: what looks wrong about the image, else what the file is.
class FileDetail : public Note {
 public:
  FileDetail(const QString& name, const images::ImageSlot& slot) : Note(name) {
    const auto show = [this, &slot] {
      const QString warnings = qtText(slot.warnings.caption());
      QFont weight = font();
      weight.setBold(!warnings.isEmpty());
      setFont(weight);
      const QString info = qtText(slot.info.caption());
      if (warnings.isEmpty())
        showNote(info.simplified(), info);
      else
        showNote(kWarning + QLatin1Char(' ') + QString(warnings).replace(QLatin1Char('\n'), QLatin1Char(' ')),
                 warnings);
    };
    tokens_ = {slot.info.changed.watch(show), slot.warnings.changed.watch(show)};
    show();
  }

 private:
  std::vector<platform::Signal::Token> tokens_;
};

// A file's line: the button with the files opened lately, and how the file is taken.
QLayout* fileRow(QWidget* open, QWidget* start, QWidget* sum, QWidget* clear) {
  auto* line = flow({open, together(captionFor(QStringLiteral("Start(HEX)")), start),
                     together(captionFor(QStringLiteral("Check Sum")), sum), clear});
  line->setSpacing(3);
  return line;
}

QWidget* openButton(const Maker& maker, platform::Button& control, char mnemonic, images::ImageKind kind,
                    const QString& list) {
  auto& opener = maker.form.images.opener;
  return withRecent(
      maker, maker.button(control, mnemonic), control,
      {.name = list,
       .list = [&opener, kind] { return opener.recent(kind).list(); },
       .open = [&opener,
                kind](const std::string& path) { return opener.open(path, kind) == images::LoadResult::Loaded; }});
}

QGroupBox* stepFiles(const Maker& maker) {
  auto& p = maker.form.images.panel;
  auto& slots = maker.form.images.slots;
  auto* code =
      openButton(maker, p.comLoadFile, 'O', images::ImageKind::Code, QStringLiteral("Code files opened lately"));
  auto* data =
      openButton(maker, p.comLoadDataFile, 'E', images::ImageKind::Data, QStringLiteral("EEPROM files opened lately"));
  code->setMinimumWidth(data->sizeHint().width());  // so that what follows is in columns
  auto* column = new QVBoxLayout;
  column->setSpacing(3);
  column->addLayout(
      fileRow(code, maker.line(p.txtAP_FileStart, QStringLiteral("Start address of the code file, hexadecimal"), 4),
              maker.line(p.txtFileCheckSum, QStringLiteral("Check sum of the code file"), 8),
              maker.check(p.cheClearAP_Buffer, 0, QStringLiteral("Clear the code buffer before a file is opened"))));
  column->addWidget(new FileNote(QStringLiteral("codeFileNote"), slots.code, FileNote::Shows::Facts));
  column->addWidget(new FileDetail(QStringLiteral("codeFileDetail"), slots.code));
  column->addLayout(
      fileRow(data, maker.line(p.txtDataFileStart, QStringLiteral("Start address of the EEPROM file, hexadecimal"), 4),
              maker.line(p.txtDataFileCheckSum, QStringLiteral("Check sum of the EEPROM file"), 8),
              maker.check(p.cheClearDataBuffer, 0, QStringLiteral("Clear the EEPROM buffer before a file is opened"))));
  column->addWidget(new FileNote(QStringLiteral("dataFileNote"), slots.data, FileNote::Shows::WarningsFirst));
  return step(maker, 1, column);
}

// Shown with the box that it speaks of.
QLabel* shownWith(platform::Control& control, const QString& text) {
  auto* label = captionFor(text);
  follow(label, control, [label, &control] { label->setVisible(control.visible()); });
  return label;
}

QHBoxLayout* powerSwitch(const Maker& maker) {
  auto& p = maker.form.download;
  auto* line = maker.combo(p.cobPowerLine, QStringLiteral("Line that switches the target's power"));
  line->setToolTip(QStringLiteral("The adapter's line that switches the target's power off and on for each chip"));
  auto* level = maker.combo(p.cobPowerLevel, QStringLiteral("Level of the line that means power on"));
  level->setToolTip(QStringLiteral("Power is on while the line is set (high) or clear (low)"));
  auto* off = maker.line(p.txtPowerOff, QStringLiteral("Milliseconds without power, 50 to 5000"), 5);
  return row({captionFor(QStringLiteral("Po&wer switch"), line), line, level,
              shownWith(p.txtPowerOff, QStringLiteral("off")), off, shownWith(p.txtPowerOff, QStringLiteral("ms"))});
}

QGroupBox* stepPort(const Maker& maker) {
  auto& form = maker.form;
  auto* column = new QVBoxLayout;
  column->setSpacing(3);
  auto* port = maker.portBox(form.main.combCommPort, QStringLiteral("Serial port"));
  auto* least = maker.combo(form.download.cobBaudMin, QStringLiteral("Lowest baud rate"));
  auto* most = maker.combo(form.download.cobBaudMax, QStringLiteral("Highest baud rate"));
  auto* line = flow({makeLamp(maker.loop(), form.main.imgOpen_sys,
                              QStringLiteral("The terminal holds the port; press to take it back")),
                     together(captionFor(QStringLiteral("&COM"), port), port),
                     together(captionFor(QStringLiteral("Ma&x Baud:"), most), most),
                     together(captionFor(QStringLiteral("Mi&n Baud:"), least), least),
                     maker.check(form.download.cheSlowAnswers)});
  line->setSpacing(3);
  column->addLayout(line);
  auto* status = maker.label(form.main.portStatus);
  status->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  status->setMinimumHeight(status->fontMetrics().height());
  status->setWordWrap(true);
  auto* power = powerSwitch(maker);
  power->addWidget(status, 1);
  column->addLayout(power);
  return step(maker, 2, column);
}

QLayout* runButtons(const Maker& maker) {
  auto& p = maker.form.download;
  auto* program = maker.button(p.comDownload[0], 'P');
  auto* repeat = maker.button(p.comDownload[1], 'R');
  auto* stop = maker.button(p.comStop_Download, 'S');
  enlarge(*program, 2.2, 1.7);
  enlarge(*repeat, 2.9, 1.25);
  enlarge(*stop, 2.9, 1.25);
  auto* line = row({program, repeat, stop});
  line->setStretch(0, 5);
  line->setStretch(1, 3);
  line->setStretch(2, 3);
  return line;
}

QLayout* runChoices(const Maker& maker) {
  auto& p = maker.form.download;
  auto* column = new QVBoxLayout;
  column->setSpacing(3);
  auto* count = maker.line(p.txtWrite_OK_Count, QStringLiteral("Chips programmed well"), 8);
  auto* delay = maker.combo(p.comDalay_ReDownLoad, QStringLiteral("Seconds between two rounds of Re-Program"));
  delay->setMaximumWidth(delay->fontMetrics().averageCharWidth() * 12);
  column->addLayout(
      row({captionFor(QStringLiteral("Pro&grammed OK"), count), count,
           maker.button(p.comClear_OK_Count, 0, QStringLiteral("Set the counter of good chips to 0")), nullptr,
           captionFor(QStringLiteral("Repeat de&lay"), delay), delay, captionFor(QStringLiteral("s"))}));
  column->addLayout(row({captionFor(QStringLiteral("Beep")), maker.option(p.optBeepYes, QStringLiteral("Beep: yes")),
                         maker.option(p.optBeepNo, QStringLiteral("Beep: no")), nullptr,
                         maker.button(p.comPlan, 'H', QStringLiteral("What will happen when Program is pressed")),
                         maker.button(p.Command2, 0, QStringLiteral("TL: program over the fixed link"))}));
  column->addLayout(row({maker.check(maker.form.images.panel.cekReloadFile), nullptr}));
  column->addLayout(row({maker.check(maker.form.main.cheBatchLog),
                         maker.line(maker.form.main.txtBatchLog, QStringLiteral("File of the batch log"))}));
  return column;
}

// What the result of a run leads to.
QLayout* followUps(const Maker& maker) {
  auto& p = maker.form.download;
  return flow({maker.button(p.comLastRun, 'u'), maker.button(p.comSaveTrace), maker.check(p.cheTrace),
               maker.button(p.comSelectSeen, 't'), maker.button(p.comLowerBaud, 'y')});
}

// What the program itself has to say, beside what the run says above it.
QLayout* noticeLine(const Maker& maker) {
  auto& main = maker.form.main;
  auto* line = new Note(QStringLiteral("labNotice"));
  follow(line, main.labNotice,
         [line, &main] { line->showNote(qtText(main.labNotice.caption()), qtText(main.labNotice.caption())); });
  auto* history = maker.button(main.comNotices, 0, QStringLiteral("History of the program's messages"));
  history->setMaximumHeight(history->fontMetrics().height() + 4);
  auto* both = row({line, history});
  both->setStretch(0, 1);
  return both;
}

// How far the batch is; there while one is chosen.
QWidget* batchLine(const Maker& maker) {
  auto& label = maker.form.batches.panel.labBatch;
  auto* line = new Note(QStringLiteral("labBatch"));
  QFont weight = line->font();
  weight.setBold(true);
  line->setFont(weight);
  follow(line, label, [line, &label] {
    line->showNote(qtText(label.caption()), qtText(label.caption()));
    line->setVisible(label.visible());
  });
  return line;
}

QGroupBox* stepProgram(const Maker& maker) {
  auto& form = maker.form;
  auto* column = new QVBoxLayout;
  column->setSpacing(3);
  column->addLayout(runButtons(maker));
  column->addWidget(batchLine(maker));
  auto* progress = makeProgress(maker.loop(), form.main.ProgressBar1, QStringLiteral("Progress of the run"));
  auto* kilobytes = maker.label(form.main.labKbyte);
  kilobytes->setMinimumWidth(kilobytes->fontMetrics().averageCharWidth() * 9);
  progress->setMaximumHeight(progress->fontMetrics().height());
  column->addLayout(row({progress, kilobytes}));
  auto* pane = makePane(maker.loop(), form.main.textMsg, QStringLiteral("Messages of the run"));
  pane->setMinimumHeight(pane->fontMetrics().height() * 5);
  pane->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Ignored);  // it takes what the steps leave
  auto* result = row({new VerdictView(maker.loop(), form.download.verdict, form.download.comLastRun), pane});
  result->setStretch(1, 1);
  column->addLayout(result, 1);
  column->addLayout(noticeLine(maker));
  column->addLayout(followUps(maker));
  column->addLayout(runChoices(maker));
  return step(maker, 4, column);
}

// What is chosen once scrolls when the screen is low, so that what a run needs never does.
class ColumnScroll : public QScrollArea {
 public:
  explicit ColumnScroll(QWidget* inner) {
    setWidgetResizable(true);
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
    setWidget(inner);
    inner->installEventFilter(this);
  }
  QSize sizeHint() const override {
    const int bar = verticalScrollBar()->sizeHint().width();
    const int width = isVisible() ? viewport()->width() : widget()->sizeHint().width();
    return {widget()->sizeHint().width() + bar, widget()->heightForWidth(width)};
  }
  QSize minimumSizeHint() const override {
    return {widget()->minimumSizeHint().width() + verticalScrollBar()->sizeHint().width(), fontMetrics().height() * 8};
  }

 protected:
  bool eventFilter(QObject* object, QEvent* event) override {
    if (event->type() == QEvent::LayoutRequest) updateGeometry();
    return QScrollArea::eventFilter(object, event);
  }
  void resizeEvent(QResizeEvent* event) override {  // narrower means higher
    QScrollArea::resizeEvent(event);
    if (event->size().width() != event->oldSize().width()) updateGeometry();
  }
};

}  // namespace

QWidget* makeLeftColumn(const Maker& maker, QWidget& window) {
  auto* inner = new QWidget;
  auto* steps = new QVBoxLayout(inner);
  steps->setContentsMargins(4, 4, 4, 0);
  steps->setSpacing(4);
  steps->addWidget(stepModel(maker, window));
  steps->addWidget(stepFiles(maker));
  steps->addWidget(stepPort(maker));
  auto* area = new ColumnScroll(inner);
  area->setObjectName(QStringLiteral("leftColumn"));
  area->setAccessibleName(QStringLiteral("Steps 1 to 3: model, files, port"));
  auto* run = new QVBoxLayout;
  run->setContentsMargins(4, 4, 4, 4);
  run->addWidget(stepProgram(maker));
  auto* whole = new QWidget;
  auto* column = new QVBoxLayout(whole);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(area);
  column->addLayout(run, 1);
  return whole;
}

}  // namespace kvr::window
