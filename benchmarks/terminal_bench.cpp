// The terminal in the real window, on a pseudo-terminal: how much it takes in, how fast it answers a click meanwhile,
// what of a core a line of 256000 baud costs, whether its memory stays bounded. Fails when a byte is lost or a limit is
// missed.
//   terminal_bench [--long]     10 minutes of each paced run and one minute of flood instead of 20 seconds of each
#include <sys/resource.h>
#include <unistd.h>

#include <QApplication>
#include <QMouseEvent>
#include <QTemporaryDir>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <deque>
#include <fstream>
#include <functional>
#include <thread>

#include "benchmarks/figure.h"
#include "benchmarks/terminal_feeder.h"
#include "shell/qt/application.h"

namespace {

using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;
constexpr double kLineRate = 25600;  // bytes a second at 256000 baud
constexpr auto kClickEvery = std::chrono::milliseconds(50);
constexpr double kClickLimitMs = 50;
constexpr double kCpuLimit = 0.10;     // of one core, at 256000 baud
constexpr double kGrowthLimitMb = 64;  // the ring, the shown text at its limit, and what the allocator keeps

double cpuSeconds() {
  rusage use{};
  getrusage(RUSAGE_SELF, &use);
  const auto seconds = [](const timeval& t) {
    return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_usec) / 1e6;
  };
  return seconds(use.ru_utime) + seconds(use.ru_stime);
}

double residentMb() {
  std::ifstream statm("/proc/self/statm");
  double total = 0;
  double resident = 0;
  statm >> total >> resident;
  return resident * static_cast<double>(sysconf(_SC_PAGESIZE)) / 1e6;
}

struct Outcome {
  std::uint64_t written = 0;
  std::uint64_t counted = 0;
  double seconds = 0;
  double cpu = 0;
  double grownMb = 0;
  std::vector<double> clickMs;
};

// Clicks on a check box from outside: the time runs from the moment the click is made to the moment its handler runs.
class Clicker {
 public:
  explicit Clicker(kvr::window::Application& program)
      : box_(program.window->findChild<QWidget*>(QStringLiteral("che_AutoOpenPort"))),
        handler_(program.form.tool.che_AutoOpenPort.onClick) {
    if (!box_) return;
    handler_ = [this] {
      times.push_back(Seconds(Clock::now() - made_.front()).count() * 1000);
      made_.pop_front();
    };
    thread_ = std::thread([this] {
      while (!done_) {
        std::this_thread::sleep_for(kClickEvery);
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
  std::vector<double> times;

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

std::uint64_t counted(kvr::window::Application& program) {
  const std::string text = program.form.tool.labReceiveCount.caption();
  return std::stoull(text.substr(text.find(':') + 1));
}

Outcome feed(kvr::window::Application& program, bench::Feeder& feeder, double seconds, double rate, bool clears) {
  Outcome result;
  auto& panel = program.form.tool;
  panel.comClearCount.press();
  panel.comDebugClear[0].press();
  const double memory = residentMb();
  const double cpu = cpuSeconds();
  const auto begin = Clock::now();
  feeder.start(seconds, rate);
  {
    Clicker clicker(program);
    if (!clicker.found()) return result;
    for (auto cleared = begin; !feeder.ended();) {
      QApplication::processEvents(QEventLoop::WaitForMoreEvents);
      if (!clears || Clock::now() - cleared < std::chrono::seconds(5)) continue;
      panel.comDebugClear[0].press();
      cleared = Clock::now();
    }
    result.seconds = Seconds(Clock::now() - begin).count();
    result.cpu = cpuSeconds() - cpu;
    // What still lies in the line.
    for (const auto end = Clock::now() + std::chrono::seconds(2); Clock::now() < end;)
      QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    result.clickMs = clicker.times;
  }
  result.grownMb = residentMb() - memory;
  result.written = feeder.written();
  result.counted = counted(program);
  return result;
}

bool good(const char* name, const Outcome& o) {
  std::printf("# %s: %llu bytes in %.1f s, %llu counted, %zu clicks, slowest %.1f ms, cpu %.2f s, memory %+.1f MB\n",
              name, static_cast<unsigned long long>(o.written), o.seconds, static_cast<unsigned long long>(o.counted),
              o.clickMs.size(), o.clickMs.empty() ? 0 : bench::percentile(o.clickMs, 1), o.cpu, o.grownMb);
  std::fflush(stdout);
  if (o.written != o.counted || o.written == 0) std::printf("# %s: bytes were lost\n", name);
  if (o.clickMs.size() < static_cast<std::size_t>(o.seconds)) std::printf("# %s: clicks were lost\n", name);
  return o.written == o.counted && o.written > 0 && o.clickMs.size() >= static_cast<std::size_t>(o.seconds);
}

}  // namespace

int main(int argc, char** argv) {
  const bool isLong = argc > 1 && std::strcmp(argv[1], "--long") == 0;
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  bench::Feeder feeder;
  QTemporaryDir folder;
  const std::string settings = folder.filePath(QStringLiteral("settings.ini")).toStdString();
  std::ofstream(settings) << "[Ports]\nCOM1=" << feeder.device() << "\n";
  kvr::window::Application program(settings);
  program.show();
  auto& form = program.form;
  form.main.TabStrip2.userSelect(2);
  form.tool.com_Debug_Baud.setListIndex(0);
  form.tool.che_KeepNewest.setValue(true);
  form.tool.comOpenCOM[0].press();
  if (!form.comTool.isOpen()) return 1;

  const auto kept = feed(program, feeder, isLong ? 600 : 20, kLineRate, false);
  const auto flood = feed(program, feeder, isLong ? 60 : 20, 0, false);
  form.tool.che_KeepNewest.setValue(false);
  const auto cleared = feed(program, feeder, isLong ? 600 : 20, kLineRate, true);
  const bool whole = good("keep the newest", kept) & good("flood", flood) & good("clear each 5 s", cleared);

  if (!whole) return 1;
  bench::figure("terminal.mb_per_s", static_cast<double>(flood.counted) / flood.seconds / 1e6, "MB/s");
  const double clickMs = std::max({bench::percentile(kept.clickMs, 0.99), bench::percentile(flood.clickMs, 0.99),
                                   bench::percentile(cleared.clickMs, 0.99)});
  const double cpuRatio = std::max(kept.cpu / kept.seconds, cleared.cpu / cleared.seconds);
  const double grownMb = std::max({kept.grownMb, flood.grownMb, cleared.grownMb});
  const double slowestMs = std::max(
      {bench::percentile(kept.clickMs, 1), bench::percentile(flood.clickMs, 1), bench::percentile(cleared.clickMs, 1)});
  bench::figure("terminal.click_ms_p99", clickMs, "ms");
  const bool quick = bench::atMost("terminal.click_ms_max", slowestMs, "ms", kClickLimitMs) &
                     bench::atMost("terminal.cpu_ratio_256k", cpuRatio, "ratio", kCpuLimit) &
                     bench::atMost("terminal.grown_mb", grownMb, "MB", kGrowthLimitMb);
  return quick && form.comTool.isOpen() ? 0 : 1;
}
