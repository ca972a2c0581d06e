// The real window with the real kvr-target, each a process's worth of its own, and a pseudo-terminal between.
#pragma once

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

#include "shell/qt/verdict_view.h"
#include "tests/window/desk.h"

namespace kvr::window {

class TargetDesk : public Desk {
 protected:
  void TearDown() override {
    Desk::TearDown();
    endTarget();
  }
  // The target on COM1 of the window that is opened next.
  void startTarget(const QStringList& arguments) {
    const QString port = folder.filePath(QStringLiteral("com1"));
    target.setProgram(QStringLiteral(KVR_BINARY_DIR "/kvr-target"));
    target.setArguments(QStringList{QStringLiteral("--link"), port, QStringLiteral("--json"), jsonPath()} + arguments);
    target.start();
    ASSERT_TRUE(target.waitForStarted());
    ASSERT_TRUE(QTest::qWaitFor([&] { return QFile::exists(port); }, 5000));
    setPort(1, port);
  }
  void setPort(int number, const QString& device) {  // of the window that is opened next
    QSettings settings(QString::fromStdString(settingsPath()), QSettings::IniFormat);
    settings.setValue(QStringLiteral("Ports/COM%1").arg(number), device);
  }
  QJsonObject holds() {  // ends the target
    endTarget();
    QFile file(jsonPath());
    return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object() : QJsonObject();
  }
  std::string pane() { return program->form.main.textMsg.text(); }
  QString verdict() { return static_cast<VerdictView&>(widget("verdict")).word(); }
  void endTarget() {
    if (target.state() == QProcess::NotRunning) return;
    target.terminate();
    target.waitForFinished(3000);
  }
  QProcess target;

 private:
  QString jsonPath() { return folder.filePath(QStringLiteral("target.json")); }
};

}  // namespace kvr::window
