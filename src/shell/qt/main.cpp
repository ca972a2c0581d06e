// kvr-isp [FILE]: opens the window, and FILE in it. The options are for this project's own scripts; see demo_run.h.
#include <QApplication>
#include <QCommandLineParser>
#include <QLibrary>
#include <span>
#include <thread>

#include "platform/qt/raw_names.h"
#include "shell/qt/application.h"
#include "shell/qt/demo_run.h"
#include "shell/qt/first_paint.h"
#include "shell/qt/shots.h"

int main(int argc, char** argv) {
  // Where fontconfig serves the fonts, it reads its configuration at the first use, which takes about as long as
  // getting to the display does. So both are done at once.
  const auto readFonts = reinterpret_cast<int (*)()>(QLibrary(QStringLiteral("fontconfig"), 1).resolve("FcInit"));
  const std::jthread fonts([readFonts] { return readFonts ? readFonts() : 0; });
  QApplication application(argc, argv);
  QApplication::setApplicationName(QStringLiteral("KVR-ISP"));
  QApplication::setQuitOnLastWindowClosed(false);
  QCommandLineParser parser;
  parser.addPositionalArgument(QStringLiteral("file"), QStringLiteral("Code file or project to open"),
                               QStringLiteral("[file]"));
  parser.addOptions(
      {{QStringLiteral("demo-run"), QStringLiteral("Press Program, print the message pane and end")},
       {QStringLiteral("first-paint"), QStringLiteral("Print the time of the first paint and end")},
       {QStringLiteral("png"), QStringLiteral("With --demo-run: picture of the window"), QStringLiteral("path")},
       {QStringLiteral("shots"), QStringLiteral("Take pictures of every page and end"), QStringLiteral("folder")},
       {QStringLiteral("prefix"), QStringLiteral("With --shots: head of the pictures' names"), QStringLiteral("text")},
       {QStringLiteral("size"), QStringLiteral("Size of the window"), QStringLiteral("WxH")},
       {QStringLiteral("dark"), QStringLiteral("Dark colours")}});
  parser.addHelpOption();
  parser.process(application);
  const QStringList files = parser.positionalArguments();

  if (parser.isSet(QStringLiteral("dark"))) kvr::window::useDarkTheme();

  kvr::window::Application program;
  int result = 0;
  program.onGone = [&] { QApplication::exit(result); };
  const std::span arguments(argv, static_cast<std::size_t>(argc));
  program.show(files.isEmpty() ? std::string() : kvr::platform::rawArgument(arguments, files.first()));
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
