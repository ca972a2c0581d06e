#include "platform/qt/raw_names.h"

namespace kvr::platform {

std::string rawPathOf(const QUrl& url) {
  if (!url.isLocalFile()) return {};
  return QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toLatin1()).toStdString();
}

std::string rawArgument(std::span<char* const> arguments, const QString& shown) {
  for (const char* argument : arguments)
    if (QString::fromLocal8Bit(argument) == shown) return argument;
  return shown.toStdString();
}

}  // namespace kvr::platform
