// kvr-driver [FILE]: the window, driven by a script: a run without a display, pictures of every page, the time of the
// first paint.
#include <QApplication>
#include <QCommandLineParser>

#include "shell/qt/font_start.h"
#include "tests/driver/demo_run.h"
#include "tests/driver/first_paint.h"
#include "tests/driver/shots.h"
#include "tests/driver/themes.h"

namespace {

QCommandLineParser& readArguments(QCommandLineParser& parser, QApplication& application) {
  parser.addPositionalArgument(QStringLiteral("file"), QStringLiteral("Code file or project to open"),
                               QStringLiteral("[file]"));
  parser.addOptions(
      {{QStringLiteral("demo-run"), QStringLiteral("Press Program, print the message pane and end")},
       {QStringLiteral("first-paint"), QStringLiteral("Print the time of the first paint and end")},
       {QStringLiteral("png"), QStringLiteral("With --demo-run: picture of the window"), QStringLiteral("path")},
       {QStringLiteral("shots"), QStringLiteral("Take pictures of every page and end"), QStringLiteral("folder")},
       {QStringLiteral("prefix"), QStringLiteral("With --shots: head of the pictures' names"), QStringLiteral("text")},
       {QStringLiteral("size"), QStringLiteral("Size of the window"), QStringLiteral("WxH")},
       {QStringLiteral("theme"), QStringLiteral("Colours: light, dark, contrast"), QStringLiteral("name")},
       {QStringLiteral("font"), QStringLiteral("Size of the font in percent"), QStringLiteral("percent")}});
  parser.addHelpOption();
  parser.process(application);
  return parser;
}

}  // namespace

int main(int argc, char** argv) {
  const kvr::window::FontStart fonts;
  QApplication application(argc, argv);
  QApplication::setApplicationName(QStringLiteral("KVR-ISP"));
  QApplication::setQuitOnLastWindowClosed(false);
  QCommandLineParser parser;
  readArguments(parser, application);
  const QStringList files = parser.positionalArguments();
  if (parser.isSet(QStringLiteral("theme"))) kvr::window::useTheme(parser.value(QStringLiteral("theme")));
  if (const int percent = parser.value(QStringLiteral("font")).toInt(); percent > 0) {
    QFont font = QApplication::font();
    font.setPointSizeF(font.pointSizeF() * percent / 100);
    QApplication::setFont(font);
  }

  kvr::window::Application program;
  int result = 0;
  program.onGone = [&] { QApplication::exit(result); };
  program.show(files.isEmpty() ? std::string() : files.first().toStdString());
  if (const QStringList size = parser.value(QStringLiteral("size")).split(QLatin1Char('x')); size.size() == 2)
    program.window->resize(size[0].toInt(), size[1].toInt());
  if (parser.isSet(QStringLiteral("first-paint"))) new kvr::window::FirstPaint(*program.window);  // the window owns it
  kvr::window::DemoRun demo(program, [&](bool ok) {
    result = ok ? 0 : 1;
    program.window->close();
  });
  if (parser.isSet(QStringLiteral("demo-run"))) demo.start(parser.value(QStringLiteral("png")));
  if (parser.isSet(QStringLiteral("shots")))
    kvr::window::takeShots(program, parser.value(QStringLiteral("shots")), parser.value(QStringLiteral("prefix")),
                           [&] { program.window->close(); });
  return QApplication::exec();
}
