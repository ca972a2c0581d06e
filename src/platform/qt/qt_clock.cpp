#include "platform/qt/qt_clock.h"

#include <QDateTime>

namespace kvr::platform {

std::string QtClock::timeOfDay() const {
  return QTime::currentTime().toString(QStringLiteral("HH:mm:ss")).toStdString();
}

std::string QtClock::timeOfDayMillis() const {
  return QTime::currentTime().toString(QStringLiteral("HH:mm:ss.zzz")).toStdString();
}

std::string QtClock::dateTime() const {
  return QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")).toStdString();
}

}  // namespace kvr::platform
