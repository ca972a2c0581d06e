#include "shell/qt/qt_handbook.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QFileInfo>
#include <QUrl>

namespace kvr::window {
namespace {

QString pageOf(std::string_view chapter) {
  const QString name =
      QString::fromUtf8(chapter.data(), static_cast<qsizetype>(chapter.size())) + QStringLiteral(".html");
  const QString program = QCoreApplication::applicationDirPath();
  const QString built = program + QStringLiteral("/packaging/handbook/") + name;
  if (QFileInfo::exists(built)) return built;
  return QFileInfo(program + QStringLiteral("/../share/doc/kvr-isp/handbook/") + name).absoluteFilePath();
}

}  // namespace

bool QtHandbook::open(std::string_view chapter) {
  const QString page = pageOf(chapter);
  return QFileInfo::exists(page) && QDesktopServices::openUrl(QUrl::fromLocalFile(page));
}

std::string QtHandbook::firstPage() const {
  return pageOf("index").toStdString();
}

}  // namespace kvr::window
