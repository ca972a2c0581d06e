// kvr-isp [FILE]: opens the window, and FILE in it. With --stations it becomes the window of a production line, which
// is a program of its own: what that loads would hold this one's start up.
#include <QApplication>
#include <QCommandLineParser>
#include <QIcon>
#include <algorithm>
#include <memory>
#include <span>
#include <string_view>

#include "platform/qt/raw_names.h"
#include "shell/qt/application.h"
#include "shell/qt/font_start.h"
#include "shell/qt/stations_program.h"

namespace {

// Help and version are told without a display, too.
bool wantsText(std::span<char*> arguments) {
  constexpr std::string_view kText[] = {"-h", "--help", "--help-all", "-v", "--version"};
  return std::any_of(arguments.begin(), arguments.end(), [&](std::string_view argument) {
    return std::find(std::begin(kText), std::end(kText), argument) != std::end(kText);
  });
}

}  // namespace

int main(int argc, char** argv) {
  const std::span arguments(argv, static_cast<std::size_t>(argc));
  if (argc > 1 && std::string_view(argv[1]) == "--stations") return kvr::window::becomeStations(arguments.subspan(2));
  const kvr::window::FontStart fonts;
  const std::unique_ptr<QCoreApplication> application(wantsText(arguments) ? new QCoreApplication(argc, argv)
                                                                           : new QApplication(argc, argv));
  QCoreApplication::setApplicationName(QStringLiteral("KVR-ISP"));
  QCoreApplication::setApplicationVersion(QStringLiteral(KVR_VERSION));
  QCommandLineParser parser;
  parser.setApplicationDescription(QStringLiteral("Programs KVR microcontrollers over a serial line."));
  parser.addPositionalArgument(QStringLiteral("file"), QStringLiteral("Code file or project to open"),
                               QStringLiteral("[file]"));
  parser.addOption(
      {QStringLiteral("stations"), QStringLiteral("First: opens the stations of a production line instead")});
  parser.addHelpOption();
  parser.addVersionOption();
  parser.process(*application);
  const QStringList files = parser.positionalArguments();

  QApplication::setQuitOnLastWindowClosed(false);
  QGuiApplication::setDesktopFileName(QStringLiteral("kvr-isp"));
  QGuiApplication::setWindowIcon(QIcon::fromTheme(QStringLiteral("kvr-isp")));
  kvr::window::Application program;
  program.onGone = [] { QApplication::exit(); };
  program.show(files.isEmpty() ? std::string() : kvr::platform::rawArgument(arguments, files.first()));
  return QApplication::exec();
}
