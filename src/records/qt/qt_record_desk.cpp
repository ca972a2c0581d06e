#include "records/qt/qt_record_desk.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <QUuid>

#include "records/qt/row_texts.h"
#include "records/qt/waiting_rows.h"

namespace kvr::records {
namespace {

constexpr const char* kSection = "Records";
constexpr const char* kKey = "Store";
constexpr qsizetype kNameDigits = 12;

QString folder() {
  return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/KVR-ISP/");
}

// The same file wherever a program stands when it is asked for.
std::string absolute(const std::string& location) {
  const QString place = QString::fromStdString(location);
  if (place.isEmpty() || place.startsWith("postgresql://")) return location;
  return QDir::cleanPath(QFileInfo(place).absoluteFilePath()).toStdString();
}

}  // namespace

std::string QtRecordDesk::location() const {
  const std::string variable = qEnvironmentVariable("KVR_RECORDS").toStdString();
  if (!variable.empty()) return variable;
  const std::string kept = settings_()->getOr(kSection, kKey, {});
  return kept.empty() ? (folder() + QStringLiteral("records.db")).toStdString() : kept;
}

std::string QtRecordDesk::keepLocation(const std::string& location) {
  const auto settings = settings_();
  settings->set(kSection, kKey, absolute(location));
  return settings->flush().error;
}

// A file for each store: what waits for one never goes into another.
std::unique_ptr<WaitingRoom> QtRecordDesk::waitingFor(const std::string& location) const {
  const QByteArray name =
      QCryptographicHash::hash(QByteArray::fromStdString(absolute(location)), QCryptographicHash::Sha256);
  const QString file = folder() + QStringLiteral("waiting-") + QString::fromLatin1(name.toHex().left(kNameDigits));
  return std::make_unique<WaitingRows>(file.toStdString());
}

std::string QtRecordDesk::utcNow() const {
  return records::utcNow().toStdString();
}

std::string QtRecordDesk::newRun() const {
  return QUuid::createUuid().toString(QUuid::WithoutBraces).toStdString();
}

}  // namespace kvr::records
