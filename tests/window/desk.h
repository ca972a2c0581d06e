// The real window off screen, with settings of its own; a test clicks, types and looks as a person would.
#pragma once

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QTabBar>
#include <QTemporaryDir>
#include <QtTest/QTest>
#include <memory>

#include "shell/qt/application.h"

namespace kvr::window {

class Desk : public ::testing::Test {
 protected:
  void open() {
    program = std::make_unique<Application>(settingsPath());
    program->onGone = [this] { gone = true; };
    program->show();
    settle();
  }
  std::string settingsPath() const { return folder.path().toStdString() + "/settings.ini"; }
  void TearDown() override {
    plans.clear();
    program.reset();
  }
  template <class T = QWidget>
  T& widget(const char* name) {
    auto* found = program->window->findChild<T*>(QString::fromLatin1(name));
    if (!found) throw std::runtime_error(std::string("no widget ") + name);
    return *found;
  }
  void click(const char* name) { QTest::mouseClick(&widget(name), Qt::LeftButton); }
  // A person does this so much later. A press that starts a run returns to the test when the run has ended, so what
  // happens during one is planned before.
  void later(int ms, std::function<void()> action) {
    plans.push_back(std::make_unique<platform::Timer>(program->loop, std::move(action)));
    plans.back()->start(platform::Millis(ms));
  }
  // Runs the loop until the condition holds, at most so long.
  bool waitFor(const std::function<bool()>& done, std::chrono::milliseconds limit = std::chrono::seconds(10)) {
    platform::Timer timer(program->loop);
    timer.start(limit);
    while (!done() && timer.isActive()) program->loop.runOnce();
    return done();
  }
  void settle() { platform::delay(program->loop, platform::Millis(30)); }
  void tab(const char* strip, const char* key) {
    const auto& tabs = std::string(strip) == "TabStrip1" ? program->form.main.TabStrip1 : program->form.main.TabStrip2;
    for (std::size_t i = 0; i < tabs.tabs().size(); ++i)
      if (tabs.tabs()[i].key == key) widget<QTabBar>(strip).setCurrentIndex(static_cast<int>(i));
    settle();
  }
  void pickModel(const QString& typed) {
    QTest::keyClicks(&widget("txtDevice"), typed);
    settle();
    QTest::keyClick(&widget("modelSearch"), Qt::Key_Return);
    settle();
  }
  QTemporaryDir folder;
  std::unique_ptr<Application> program;
  std::vector<std::unique_ptr<platform::Timer>> plans;  // go before the loop they are armed in
  bool gone = false;
};

}  // namespace kvr::window
