#include <QUrl>
#include <QUrlQuery>

#include "records/qt/schema.h"
#include "records/qt/sql_store.h"

namespace kvr::records {
namespace {

// Why the books cannot be at `location`; empty: they can.
std::string refusalOf(const QString& location) {
  if (location.isEmpty()) return "No record store is given.";
  if (!location.startsWith("postgresql://")) return {};
  const QUrl url(location, QUrl::StrictMode);
  if (!url.isValid() || url.path().size() < 2)
    return "This is no address of a record store: postgresql://user@host/database.";
  if (!url.password().isEmpty() || QUrlQuery(url).hasQueryItem(QStringLiteral("password")))
    return "A password does not belong into the address of the record store. Put it into the file that PGPASSFILE "
           "names.";
  return {};
}

}  // namespace

Stored<std::unique_ptr<RecordStore>> openStore(const std::string& location) {
  Stored<std::unique_ptr<RecordStore>> stored;
  const QString place = QString::fromStdString(location);
  if (const std::string why = refusalOf(place); !why.empty()) {
    stored.fault = {StoreFault::Kind::Refused, why};
    return stored;
  }
  auto link = std::make_unique<SqlLink>(place);
  stored.fault = bringUpToDate(*link);
  if (stored.ok()) stored.value = std::make_unique<SqlStore>(std::move(link));
  return stored;
}

}  // namespace kvr::records
