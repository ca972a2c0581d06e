// A PostgreSQL server of the tests' own, on a Unix socket in a temporary folder.
#pragma once

#include <QTemporaryDir>
#include <string>

namespace kvr::test {

class PrivateServer {
 public:
  PrivateServer();  // started, with an empty database; see `runs`
  ~PrivateServer();

  bool runs() const { return !location_.empty(); }           // false: PostgreSQL is not installed
  const std::string& location() const { return location_; }  // as `openStore` takes it
  bool stop();
  bool start();
  bool emptyDatabase();

 private:
  bool call(const QString& program, const QStringList& arguments) const;
  QTemporaryDir folder_;
  QString bin_;
  std::string location_;
};

}  // namespace kvr::test
