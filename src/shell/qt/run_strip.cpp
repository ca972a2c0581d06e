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

// "Programmed OK: 12", of the counter's box.
class CountLabel : public QLabel {
 public:
  explicit CountLabel(platform::TextBox& counter) {
    setTextFormat(Qt::PlainText);
    setObjectName(QStringLiteral("strip_count"));
    const auto show = [this, &counter] { setText(QStringLiteral("Programmed OK: ") + qtText(counter.trimmed())); };
    token_ = counter.changed.watch(show);
    show();
  }

 private:
  platform::Signal::Token token_;
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
                       new CountLabel(download.txtWrite_OK_Count), nullptr});
  auto* column = new QVBoxLayout;
  column->setSpacing(2);
  column->addLayout(buttons);
  column->addLayout(row({progress, kilobytes}));
  auto* strip = new QWidget;
  strip->setObjectName(QStringLiteral("runStrip"));
  auto* line = row({sign(maker)});
  line->addLayout(column, 1);
  strip->setLayout(line);
  return strip;
}

}  // namespace kvr::window
