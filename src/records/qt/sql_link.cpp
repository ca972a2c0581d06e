#include "records/qt/sql_link.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QSqlError>
#include <QUrl>
#include <QUrlQuery>
#include <QUuid>

namespace kvr::records {
namespace {

constexpr qint64 kPatienceMs = 10000;  // with a transaction that others keep getting in front of

StoreFault unreachable(const QString& words) {
  return {StoreFault::Kind::Unreachable, words.toStdString()};
}

// What SQLite calls busy, and PostgreSQL a serialisation failure or a deadlock.
bool isInTheWay(const QSqlError& error) {
  static const QStringList codes{"5", "6", "517", "40001", "40P01"};
  return codes.contains(error.nativeErrorCode());
}

QSqlDatabase serverAt(const QString& name, const QUrl& url) {
  QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QPSQL"), name);
  const QString socket = QUrlQuery(url).queryItemValue(QStringLiteral("host"), QUrl::FullyDecoded);
  db.setHostName(socket.isEmpty() ? url.host() : socket);
  db.setUserName(url.userName());
  db.setDatabaseName(url.path().mid(1));
  if (url.port() > 0) db.setPort(url.port());
  db.setConnectOptions(QStringLiteral(
      "connect_timeout=5;keepalives_idle=5;keepalives_interval=2;keepalives_count=3;tcp_user_timeout=10000"));
  return db;
}

QSqlDatabase fileAt(const QString& name, const QString& path) {
  QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
  db.setDatabaseName(path);
  db.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=10000"));
  return db;
}

}  // namespace

SqlLink::SqlLink(const QString& location)
    : name_(QUuid::createUuid().toString()), place_(location), server_(location.startsWith("postgresql://")) {
  if (server_)
    serverAt(name_, QUrl(location));
  else
    fileAt(name_, location);
}

SqlLink::~SqlLink() {
  QSqlDatabase::database(name_, false).close();
  QSqlDatabase::removeDatabase(name_);
}

void SqlLink::fail(const QSqlError& error, const QString& doing) {
  again_ = isInTheWay(error);
  const QString why = error.databaseText().trimmed().section('\n', 0, 0);
  throw SqlFailure{unreachable(QStringLiteral("The record store %1: %2").arg(doing, why))};
}

void SqlLink::open() {
  QSqlDatabase db = QSqlDatabase::database(name_, false);
  if (db.isOpen()) return;
  if (!server_ && !QDir().mkpath(QFileInfo(place_).path()))
    throw SqlFailure{
        unreachable(QStringLiteral("The record store's folder %1 cannot be made.").arg(QFileInfo(place_).path()))};
  if (!db.open()) fail(db.lastError(), QStringLiteral("cannot be opened"));
  try {
    settle();
  } catch (const SqlFailure&) {
    db.close();  // one that has only some of its settings, or shows nobody that this process lives
    throw;
  }
}

void SqlLink::settle() {
  static const QStringList file{"PRAGMA journal_mode = WAL", "PRAGMA synchronous = FULL", "PRAGMA foreign_keys = ON"};
  static const QStringList server{"SET synchronous_commit = on", "SET lock_timeout = '10s'",
                                  "SET statement_timeout = '15s'"};
  for (const QString& setting : server_ ? server : file) ask(setting);
  if (presence_ != 0 && server_)  // the lock went with the connection
    ask(QStringLiteral("SELECT pg_advisory_lock(?)"), {presence_});
}

QSqlQuery SqlLink::ask(const QString& statement, std::initializer_list<QVariant> values) {
  QSqlQuery query(QSqlDatabase::database(name_, false));
  query.setForwardOnly(true);
  bool done = false;
  if (values.size() == 0) {
    done = query.exec(statement);  // of those without values a server prepares only some
  } else if (query.prepare(statement)) {
    for (const QVariant& value : values) query.addBindValue(value);
    done = query.exec();
  }
  if (!done) fail(query.lastError(), QStringLiteral("does not answer"));
  return query;
}

int SqlLink::tell(const QString& statement, std::initializer_list<QVariant> values) {
  return ask(statement, values).numRowsAffected();
}

StoreFault SqlLink::attempt(const QString& begin, const std::function<StoreFault()>& work) {
  again_ = false;
  try {
    open();
    ask(begin);
    StoreFault fault = work();
    ask(fault.none() ? QStringLiteral("COMMIT") : QStringLiteral("ROLLBACK"));
    return fault;
  } catch (const SqlFailure& failure) {
    QSqlDatabase db = QSqlDatabase::database(name_, false);
    if (db.isOpen() && !QSqlQuery(db).exec(QStringLiteral("ROLLBACK")) && server_)
      db.close();  // a broken connection: the next call makes a new one
    return failure.fault;
  }
}

StoreFault SqlLink::change(const std::function<StoreFault()>& work) {
  QElapsedTimer since;
  since.start();
  while (true) {
    StoreFault fault = attempt(server_ ? QStringLiteral("BEGIN") : QStringLiteral("BEGIN IMMEDIATE"), work);
    if (fault.none() || !again_ || since.elapsed() >= kPatienceMs) return fault;
  }
}

StoreFault SqlLink::look(const std::function<StoreFault()>& work) {
  return attempt(server_ ? QStringLiteral("BEGIN ISOLATION LEVEL REPEATABLE READ READ ONLY") : QStringLiteral("BEGIN"),
                 work);
}

QString SqlLink::lockFile(qint64 presence) const {
  const QString file = QFileInfo(place_).canonicalFilePath();  // the same for all, by whatever way they reach it
  return QStringLiteral("%1.station-%2").arg(file.isEmpty() ? place_ : file).arg(presence);
}

// On one computer a file that the process has locked, which the system ends with it; on a server a lock that goes with
// the connection.
void SqlLink::showPresence() {
  if (presence_ != 0) return;
  presence_ = static_cast<qint64>(QRandomGenerator::system()->generate64() >> 2) | 1;
  if (server_) {
    ask(QStringLiteral("SELECT pg_advisory_lock(?)"), {presence_});
    return;
  }
  alive_ = std::make_unique<QLockFile>(lockFile(presence_));
  alive_->setStaleLockTime(0);
  if (!alive_->tryLock(0)) {
    alive_.reset();
    presence_ = 0;
    throw SqlFailure{
        unreachable(QStringLiteral("The record store's folder %1 cannot be written.").arg(QFileInfo(place_).path()))};
  }
}

bool SqlLink::isGone(qint64 presence) {
  if (presence == presence_) return false;
  if (!server_) {
    QLockFile other(lockFile(presence));
    other.setStaleLockTime(1);  // the system's lock alone counts: a name or a process's number may be another's by now
    return other.tryLock(0);    // and takes the dead one's file away
  }
  QSqlQuery query = ask(QStringLiteral("SELECT pg_try_advisory_xact_lock(?)"), {presence});
  return query.next() && query.value(0).toBool();
}

}  // namespace kvr::records
