// Values of the books as the texts and columns that the database keeps, and what every part of the store says.
#pragma once

#include <QSqlQuery>
#include <QString>

#include "records/record_store.h"

namespace kvr::records {

QString jobText(const Fingerprint& job);  // JSON, one object
Fingerprint jobOf(const QString& text);
QString nameOf(Verdict verdict);  // "passed", "in part", "failed"
Verdict verdictOf(const QString& name);
RunRow rowOf(const QSqlQuery& query);  // the columns of `runs` in the order of the table
QString utcNow();
inline QString text(const std::string& value) {
  return QString::fromStdString(value);
}
// The numbers of the batch's counters at a place.
std::vector<std::int64_t> numbersAt(const Batch& batch, std::int64_t ordinal);

inline StoreFault no(const std::string& words) {
  return {StoreFault::Kind::Refused, words};
}
inline StoreFault noBatch(const std::string& name) {
  return no("There is no batch \"" + name + "\" in the record store.");
}

}  // namespace kvr::records
