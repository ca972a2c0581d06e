#include "shell/qt/run_strip.h"

#include "shell/qt/verdict_view.h"

namespace kvr::window {
namespace {

template <class Widget>
Widget* renamed(Widget* widget) {
  widget->setObjectName(QLatin1String("strip_") + widget->objectName());
  return widget;
}

// The sign, smaller than in the column, but still as a word, a shape and a colour.
QWidget* sign(const Maker& maker) {
  auto* view = renamed(new VerdictView(maker.loop(), maker.form.download.verdict, maker.form.download.comLastRun));
  const int line = view->fontMetrics().height();
  view->setFixedSize(line * 8, line * 4);
  return view;
}

QPushButton* runButton(const Maker& maker, platform::Button& control) {
  auto* button = renamed(maker.button(control));
  QFont font = button->font();
  font.setBold(true);
  button->setFont(font);
  button->setMinimumHeight(button->fontMetrics().height() * 2);
  return button;
}

// "Programmed OK: 12", of the counter's box; of a batch that is chosen how far it is.
class CountLabel : public QLabel {
 public:
  CountLabel(platform::TextBox& counter, platform::Label& batch) {
    setTextFormat(Qt::PlainText);
    setObjectName(QStringLiteral("strip_count"));
    setMaximumWidth(fontMetrics().averageCharWidth() * 40);
    const auto show = [this, &counter, &batch] {
      const std::string& whole = batch.caption();
      setText(batch.visible() ? qtText(whole.substr(0, whole.find(". ")))
                              : QStringLiteral("Programmed OK: ") + qtText(counter.trimmed()));
      setPlainTip(*this, qtText(whole));
    };
    tokens_ = {counter.changed.watch(show), batch.changed.watch(show)};
    show();
  }

 private:
  std::vector<platform::Signal::Token> tokens_;
};

// While the strip is alone, the button among the tabs is not there.
QWidget* wayBack(const Maker& maker) {
  auto& main = maker.form.main;
  auto* button = renamed(maker.button(main.comMastWindow));
  follow(button, main.cheStripOnly, [button, &main] {
    const bool alone = main.cheStripOnly.value();
    if (!alone || button->parentWidget()) button->setVisible(alone);  // by itself it would be a window
  });
  return button;
}

// The end of the message pane.
class LastMessage : public QLabel {
 public:
  explicit LastMessage(platform::TextBox& pane) {
    setTextFormat(Qt::PlainText);
    setObjectName(QStringLiteral("strip_message"));
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    const auto show = [this, &pane] {
      const std::string& all = pane.text();
      const std::size_t end = all.find_last_not_of(" \r\n");
      const std::size_t start = end == std::string::npos ? end : all.find_last_of("\r\n", end);
      whole_ = end == std::string::npos ? QString() : qtText(all.substr(start + 1, end - start));
      setPlainTip(*this, whole_);
      fit();
    };
    tokens_ = {pane.changed.watch(show), pane.appended.watch(show)};
    show();
  }

 protected:
  void resizeEvent(QResizeEvent* event) override {
    QLabel::resizeEvent(event);
    fit();
  }

 private:
  void fit() { setText(fontMetrics().elidedText(whole_, Qt::ElideRight, width())); }
  QString whole_;
  std::vector<platform::Signal::Token> tokens_;
};

}  // namespace

QWidget* makeRunStrip(const Maker& maker) {
  auto& download = maker.form.download;
  auto& main = maker.form.main;
  auto* progress = renamed(makeProgress(maker.loop(), main.ProgressBar1, QStringLiteral("Progress of the run")));
  progress->setMaximumHeight(progress->fontMetrics().height());
  auto* kilobytes = renamed(maker.label(main.labKbyte));
  kilobytes->setMinimumWidth(kilobytes->fontMetrics().averageCharWidth() * 9);
  auto* buttons = row({runButton(maker, download.comDownload[0]), runButton(maker, download.comStop_Download),
                       new CountLabel(download.txtWrite_OK_Count, maker.form.batches.panel.labBatch), nullptr});
  buttons->addSpacing(12);
  buttons->addWidget(maker.check(main.cheStripOnly));
  buttons->addWidget(wayBack(maker));
  auto* column = new QVBoxLayout;
  column->setSpacing(2);
  column->addLayout(buttons);
  column->addLayout(row({progress, kilobytes}));
  column->addWidget(new LastMessage(main.textMsg));
  auto* strip = new QWidget;
  strip->setObjectName(QStringLiteral("runStrip"));
  auto* line = row({sign(maker)});
  line->addLayout(column, 1);
  strip->setLayout(line);
  return strip;
}

}  // namespace kvr::window
