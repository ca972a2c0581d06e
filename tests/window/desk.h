// The real window off screen, with settings of its own; a test clicks, types and looks as a user would.
#pragma once

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QSettings>
#include <QTabBar>
#include <QTemporaryDir>
#include <QtTest/QTest>
#include <memory>

#include "shell/qt/application.h"

namespace kvr::window {

class Desk : public ::testing::Test {
 protected:
  void open(const std::string& file = {}) {
    gone = false;
    program = std::make_unique<Application>(settingsPath());
    program->onGone = [this] { gone = true; };
    program->show(file);
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
  // The user does this as soon as `condition` holds. A press that starts a run returns to the test when the run has
  // ended, so what happens during one is planned before.
  void whenever(std::function<bool()> condition, std::function<void()> action) {
    plans.push_back(nullptr);
    const std::size_t place = plans.size() - 1;
    plans[place] = std::make_unique<platform::Timer>(
        program->loop,
        [this, place, condition = std::move(condition), action = std::move(action)] {
          if (!condition()) return;
          plans[place]->stop();
          action();
        },
        platform::Timer::Kind::Periodic);
    plans[place]->start(platform::Millis(5));
  }
  // Ends what a fault would let go on for ever, so that the test fails and does not hang.
  void atTheLatest(std::chrono::milliseconds limit, std::function<void()> action) {
    plans.push_back(std::make_unique<platform::Timer>(program->loop, std::move(action)));
    plans.back()->start(limit);
  }
  // Ends a wait for what never comes. No wait of a good run is near it, on a busy machine either.
  static constexpr std::chrono::seconds kLimit{60};
  // Runs the loop until the condition holds, at most so long.
  bool waitFor(const std::function<bool()>& done, std::chrono::milliseconds limit = kLimit) {
    platform::Timer timer(program->loop);
    timer.start(limit);
    while (!done() && timer.isActive()) program->loop.runOnce();
    return done();
  }
  // Until every gesture has run and every widget has followed.
  void settle() {
    do QApplication::processEvents();
    while (program->loop.dispatchReady());
    QApplication::processEvents();
  }
  void set(const char* key, const QVariant& value) {  // in the settings of the next window
    QSettings settings(QString::fromStdString(settingsPath()), QSettings::IniFormat);
    settings.setValue(QLatin1String("Settings/") + QLatin1String(key), value);
  }
  QVariant saved(const char* key) {
    return QSettings(QString::fromStdString(settingsPath()), QSettings::IniFormat)
        .value(QLatin1String("Settings/") + QLatin1String(key));
  }
  // The window has gone, and the program may end.
  bool isGone() {
    const bool hidden = waitFor([this] { return !program->window->isVisible(); });
    settle();
    return hidden && gone;
  }
  void closeAndWait() {
    program->window->close();
    ASSERT_TRUE(isGone());
  }
  // Each page of a tab strip that the model has.
  void onEachPage(const char* strip, const std::function<void()>& look) {
    auto& bar = widget<QTabBar>(strip);
    for (int i = 0; i < bar.count(); ++i) {
      if (!bar.isTabEnabled(i)) continue;
      bar.setCurrentIndex(i);
      settle();
      look();
    }
  }
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
