#include "shell/qt/stations_program.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <cstdio>

#include "platform/qt/become_program.h"

namespace kvr::window {
namespace {

const QString kName = QStringLiteral("kvr-stations");

QString programIn(const QString& folder) {
  const QString beside = folder + QLatin1Char('/') + kName;
  return QFileInfo(beside).isExecutable() ? beside : QStandardPaths::findExecutable(kName);
}

}  // namespace

QString startStations(const QString& project) {
  const QString program = programIn(QCoreApplication::applicationDirPath());
  const QStringList words = project.isEmpty() ? QStringList() : QStringList{project};
  if (!program.isEmpty() && QProcess::startDetached(program, words)) return {};
  return QStringLiteral("The program kvr-stations could not be started. It belongs beside kvr-isp.");
}

int becomeStations(std::span<char*> arguments) {
  const QString program = programIn(QFileInfo(QStringLiteral("/proc/self/exe")).canonicalPath());
  if (!program.isEmpty()) platform::becomeProgram(program.toLocal8Bit().toStdString(), arguments);
  std::fputs("kvr-isp: there is no kvr-stations beside it\n", stderr);
  return 1;
}

}  // namespace kvr::window
