// The connection to the books' database: statements with values, transactions, one fault in words. Knows which of the
// two databases it talks to and nothing of what is kept there.
#pragma once

#include <QLockFile>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>
#include <QVariant>
#include <functional>
#include <initializer_list>
#include <memory>

#include "records/record_store.h"

namespace kvr::records {

// A database that could not be asked, thrown inside a transaction and caught where it ends.
struct SqlFailure {
  StoreFault fault;
};

class SqlLink {
 public:
  explicit SqlLink(const QString& location);
  ~SqlLink();
  SqlLink(const SqlLink&) = delete;
  SqlLink& operator=(const SqlLink&) = delete;

  // Runs `work` as one transaction that writes: begun again from nothing when another one was in its way. A fault that
  // it returns, or throws, takes everything back.
  StoreFault change(const std::function<StoreFault()>& work);
  // The same for a look: all that it reads is of one moment.
  StoreFault look(const std::function<StoreFault()>& work);

  // Inside a transaction. Throws SqlFailure.
  QSqlQuery ask(const QString& statement, std::initializer_list<QVariant> values = {});
  // Rows that `statement` changed.
  int tell(const QString& statement, std::initializer_list<QVariant> values = {});

  bool isServer() const { return server_; }
  // " FOR UPDATE" where rows are locked one by one.
  QString forUpdate() const { return server_ ? QStringLiteral(" FOR UPDATE") : QString(); }

  // This process's sign of life, which goes with it however it ends. 0: not shown yet.
  qint64 presence() const { return presence_; }
  void showPresence();
  // Has the process with that sign gone? Itself is never gone.
  bool isGone(qint64 presence);

 private:
  void open();
  void settle();  // of a new connection
  void fail(const QSqlError& error, const QString& doing);
  StoreFault attempt(const QString& begin, const std::function<StoreFault()>& work);
  QString lockFile(qint64 presence) const;

  QString name_;  // of the connection, unique
  QString place_;
  bool server_ = false;
  qint64 presence_ = 0;
  std::unique_ptr<QLockFile> alive_;
  bool again_ = false;  // the failure was another transaction in the way
};

}  // namespace kvr::records
