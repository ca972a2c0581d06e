// Clicks on a check box of the terminal's page from outside of the window's thread: the time runs from the moment the
// click is made to the moment its handler runs.
#pragma once

#include <QApplication>
#include <QMouseEvent>
#include <atomic>
#include <chrono>
#include <deque>
#include <functional>
#include <thread>
#include <vector>

#include "shell/qt/application.h"

namespace kvr::window {

class Clicker {
  using Clock = std::chrono::steady_clock;

 public:
  Clicker(Application& program, std::chrono::milliseconds every)
      : box_(program.window->findChild<QWidget*>(QStringLiteral("cheSpreadHex_0"))),
        handler_(program.form.tool.cheSpreadHex[0].onClick) {
    if (!box_) return;
    handler_ = [this] {
      times.push_back(std::chrono::duration<double, std::milli>(Clock::now() - made_.front()).count());
      made_.pop_front();
    };
    thread_ = std::thread([this, every] {
      while (!done_) {
        std::this_thread::sleep_for(every);
        const auto made = Clock::now();
        QMetaObject::invokeMethod(
            &here_, [this, made] { click(made); }, Qt::QueuedConnection);
      }
    });
  }
  // Every click that was made is answered first: none may reach whoever comes next.
  ~Clicker() {
    done_ = true;
    if (thread_.joinable()) thread_.join();
    QApplication::processEvents();
    for (const auto end = Clock::now() + std::chrono::seconds(2); !made_.empty() && Clock::now() < end;)
      QApplication::processEvents();
    handler_ = {};
  }
  Clicker(const Clicker&) = delete;
  Clicker& operator=(const Clicker&) = delete;
  bool found() const { return box_ != nullptr; }
  std::vector<double> times;  // milliseconds

 private:
  void click(Clock::time_point made) {
    made_.push_back(made);
    for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
      const QPointF at(8, box_->height() / 2.0);
      QMouseEvent event(type, at, box_->mapToGlobal(at), Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
      QApplication::sendEvent(box_, &event);
    }
  }
  QWidget* box_;
  std::function<void()>& handler_;
  std::deque<Clock::time_point> made_;  // clicks whose handler has not run yet
  std::atomic<bool> done_{false};
  std::thread thread_;
  QObject here_;  // calls that are still queued go with it
};

}  // namespace kvr::window
