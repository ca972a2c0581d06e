#include "records/qt/row_texts.h"

#include <QDateTime>
#include <QJsonDocument>
#include <QJsonObject>
#include <QVariant>
#include <array>
#include <utility>

namespace kvr::records {
namespace {

constexpr std::array<std::pair<Verdict, const char*>, 3> kVerdicts{
    {{Verdict::Passed, "passed"}, {Verdict::PassedInPart, "in part"}, {Verdict::Failed, "failed"}}};

}  // namespace

QString jobText(const Fingerprint& job) {
  QJsonObject object;
  for (const FingerprintPart& part : fingerprintParts())
    object.insert(QLatin1String(part.key), QString::fromStdString(job.*part.value));
  return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

Fingerprint jobOf(const QString& text) {
  const QJsonObject object = QJsonDocument::fromJson(text.toUtf8()).object();
  Fingerprint job;
  for (const FingerprintPart& part : fingerprintParts())
    job.*part.value = object.value(QLatin1String(part.key)).toString().toStdString();
  return job;
}

QString nameOf(Verdict verdict) {
  for (const auto& [known, name] : kVerdicts)
    if (known == verdict) return QString::fromLatin1(name);
  return QStringLiteral("failed");
}

Verdict verdictOf(const QString& name) {
  for (const auto& [verdict, known] : kVerdicts)
    if (name == QLatin1String(known)) return verdict;
  return Verdict::Failed;
}

RunRow rowOf(const QSqlQuery& query) {
  int next = 0;
  const auto text = [&] { return query.value(next++).toString().toStdString(); };
  RunRow row;
  for (std::string RunRow::*field :
       {&RunRow::run, &RunRow::batch, &RunRow::station, &RunRow::port, &RunRow::adapter, &RunRow::began})
    row.*field = text();
  row.seconds = query.value(next++).toDouble();
  row.stageSeconds = text();
  row.verdict = verdictOf(query.value(next++).toString());
  for (std::string RunRow::*field : {&RunRow::words, &RunRow::chip, &RunRow::firmware, &RunRow::factoryId,
                                     &RunRow::numbers, &RunRow::codeSum, &RunRow::dataSum})
    row.*field = text();
  row.bytesLeftOut = query.value(next++).toLongLong();
  row.programVersion = text();
  row.operatorName = text();
  return row;
}

std::vector<std::int64_t> numbersAt(const Batch& batch, std::int64_t ordinal) {
  std::vector<std::int64_t> numbers;
  for (const Counter& counter : batch.counters) numbers.push_back(counter.at(ordinal));
  return numbers;
}

QString utcNow() {
  return QDateTime::currentDateTimeUtc().toString(Qt::ISODate);
}

}  // namespace kvr::records
