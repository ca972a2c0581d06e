#include "tests/records/private_server.h"

#include <unistd.h>

#include <QDir>
#include <QProcess>

namespace kvr::test {

PrivateServer::PrivateServer() : folder_(QDir::tempPath() + "/kvr-books-XXXXXX") {
  const QDir versions("/usr/lib/postgresql");
  const QStringList found = versions.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
  if (found.isEmpty() || !folder_.isValid()) return;
  bin_ = versions.filePath(found.last() + "/bin/");
  if (::geteuid() == 0)  // the server refuses to run as root
    QProcess::execute("chown", {"postgres", folder_.path()});
  if (!call("initdb", {"-D", folder_.filePath("data"), "-A", "trust", "-U", "kvr", "-N"}) || !start() ||
      !call("createdb", {"-h", folder_.path(), "-U", "kvr", "books"}))
    return;
  location_ = "postgresql://kvr@/books?host=" + folder_.path().toStdString();
}

PrivateServer::~PrivateServer() {
  if (runs()) stop();
}

bool PrivateServer::call(const QString& program, const QStringList& arguments) const {
  QStringList line{bin_ + program};
  line += arguments;
  if (::geteuid() == 0) line = QStringList{"runuser", "-u", "postgres", "--"} + line;
  QProcess process;
  process.setWorkingDirectory("/");
  process.setStandardOutputFile(QProcess::nullDevice());
  process.setStandardErrorFile(QProcess::nullDevice());
  process.start(line.takeFirst(), line);
  return process.waitForFinished(60000) && process.exitCode() == 0;
}

bool PrivateServer::start() {
  return call("pg_ctl", {"-D", folder_.filePath("data"), "-w", "-l", folder_.filePath("log"), "-o",
                         "-c listen_addresses= -c unix_socket_directories=" + folder_.path(), "start"});
}

bool PrivateServer::stop() {
  return call("pg_ctl", {"-D", folder_.filePath("data"), "-w", "-m", "fast", "stop"});
}

bool PrivateServer::emptyDatabase() {
  return call("dropdb", {"-h", folder_.path(), "-U", "kvr", "-f", "books"}) &&
         call("createdb", {"-h", folder_.path(), "-U", "kvr", "books"});
}

}  // namespace kvr::test
