// kvr-stations [FILE.KVR]: the window of a production line, with a tile for each station.
#include <QApplication>
#include <QCommandLineParser>
#include <QIcon>

#include "stations/window/program.h"
#include "stations/window/stations_window.h"

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  QCoreApplication::setApplicationName(QStringLiteral("KVR-ISP"));
  QCoreApplication::setApplicationVersion(QStringLiteral(KVR_VERSION));
  QGuiApplication::setDesktopFileName(QStringLiteral("kvr-isp"));
  QGuiApplication::setWindowIcon(QIcon::fromTheme(QStringLiteral("kvr-isp")));
  QCommandLineParser parser;
  parser.setApplicationDescription(QStringLiteral("Programs several KVR microcontrollers at once."));
  parser.addPositionalArgument(QStringLiteral("project"), QStringLiteral("Project that all stations program"),
                               QStringLiteral("[project]"));
  parser.addHelpOption();
  parser.addVersionOption();
  parser.process(application);
  const QStringList files = parser.positionalArguments();
  kvr::tiles::Program program;
  program.show(files.isEmpty() ? std::string() : files.first().toStdString());
  return QApplication::exec();
}
