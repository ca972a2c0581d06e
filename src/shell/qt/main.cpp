// kvr-isp [FILE]: opens the window, and FILE in it. The options are for this project's own scripts; see demo_run.h.
#include <QApplication>
#include <QCommandLineParser>

#include "shell/qt/application.h"
#include "shell/qt/demo_run.h"

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QApplication::setApplicationName(QStringLiteral("KVR-ISP"));
  QApplication::setQuitOnLastWindowClosed(false);
  QCommandLineParser parser;
  parser.addPositionalArgument(QStringLiteral("file"), QStringLiteral("Code file or project to open"), QStringLiteral("[file]"));
  parser.addOptions({{QStringLiteral("demo-run"), QStringLiteral("Press Program, print the message pane and end")},
                     {QStringLiteral("png"), QStringLiteral("With --demo-run: picture of the window"), QStringLiteral("path")}});
  parser.addHelpOption();
  parser.process(application);
  const QStringList files = parser.positionalArguments();

  kvr::window::Application program;
  int result = 0;
  program.onGone = [&] { QApplication::exit(result); };
  program.show(files.isEmpty() ? std::string() : files.first().toStdString());
  kvr::window::DemoRun demo(program, [&](bool ok) {
    result = ok ? 0 : 1;
    program.window->close();
  });
  if (parser.isSet(QStringLiteral("demo-run"))) demo.start(parser.value(QStringLiteral("png")));
  return QApplication::exec();
}
