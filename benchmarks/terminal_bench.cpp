// The terminal in the real window, on a pseudo-terminal, with time stamps and a log: how much it takes in, how fast it
// answers a click meanwhile, what of a core a line of 256000 baud costs, whether its memory stays bounded. Fails when a
// byte is lost in the window or in the log, or a limit is missed.
//   terminal_bench --flood SECONDS   the flood alone, for a profiler
//   terminal_bench [--long [MINUTES]]   two hours of 921600 baud with a log after the others, which take 10 minutes (a
//                                       flood one) instead of 20 seconds; or so many minutes, and 20 seconds as usual
#include <sys/resource.h>
#include <time.h>
#include <unistd.h>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <fstream>

#include "benchmarks/figure.h"
#include "benchmarks/terminal_feeder.h"
#include "shell/qt/application.h"
#include "tests/window/clicker.h"

namespace {

using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;
constexpr double kLineRate = 25600;          // bytes a second at 256000 baud
constexpr double kFastRate = 92160;          // at 921600 baud
constexpr double kFloodLimit = 70;           // MB/s, at least
constexpr double kFloodCpuLimit = 0.8 / 70;  // seconds of a core for each MB, which a loaded machine does not distort
constexpr double kTurnLimitMs = 8;           // of a core, for one turn of the event loop
constexpr double kSmoothLimitMs = 16;        // 99 clicks of 100
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

// Of the thread that the window runs in.
double threadCpuMs() {
  timespec used{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &used);
  return static_cast<double>(used.tv_sec) * 1e3 + static_cast<double>(used.tv_nsec) / 1e6;
}

double residentMb() {
  std::ifstream statm("/proc/self/statm");
  double total = 0;
  double resident = 0;
  statm >> total >> resident;
  return resident * static_cast<double>(sysconf(_SC_PAGESIZE)) / 1e6;
}

// "log-2030-01-31-123456.txt" is the first part, "log-2030-01-31-123456-2.txt" the second one.
QString partOfLog(const QString& folder, std::uint64_t part) {
  for (const QString& name : QDir(folder).entryList({QStringLiteral("log-*.txt")}, QDir::Files)) {
    const QString number = name.section(QLatin1Char('-'), 5).section(QLatin1Char('.'), 0, 0);
    if ((number.isEmpty() ? 1 : number.toULongLong()) == part) return folder + QLatin1Char('/') + name;
  }
  return {};
}

// Whether the log that has just ended holds what was sent, in the files that are kept. Those of text as shown have a
// stamp in front of each line, which counts for nothing here.
bool logIsWhole(kvr::window::Application& program, const QString& folder, std::uint64_t written) {
  auto& panel = program.form.tool;
  const bool asShown = panel.comb_LogForm.listIndex() == 1;
  const std::string sent = bench::numberedLines();
  const auto fileBytes = static_cast<std::uint64_t>(std::stoul(panel.txtLogSize.text())) * 1'000'000;
  const auto last = asShown ? 1 : (written + fileBytes - 1) / fileBytes;  // the number of the last file
  std::uint64_t bytes = 0;
  for (auto part = last > 3 ? last - 2 : 1; part <= last; ++part) {
    QFile file(partOfLog(folder, part));
    if (!file.open(QIODevice::ReadOnly)) return false;
    std::uint64_t at = (part - 1) * fileBytes;
    while (!file.atEnd()) {
      QByteArray piece = asShown ? file.readLine() : file.read(1 << 20);
      if (asShown && piece.startsWith('[')) piece.remove(0, 15);
      bytes += static_cast<std::uint64_t>(piece.size());
      for (const char c : piece)
        if (c != sent[at++ % sent.size()]) return false;
    }
    if (part == last && at != written) return false;
  }
  return bytes > 0;
}

struct Outcome {
  bool logWhole = false;
  std::uint64_t written = 0;
  std::uint64_t counted = 0;
  double seconds = 0;
  double cpu = 0;
  double grownMb = 0;
  std::vector<double> clickMs;
  double longestTurnMs = 0;  // of the window's thread, its own work alone
};

std::uint64_t counted(kvr::window::Application& program) {
  const std::string text = program.form.tool.labReceiveCount.caption();
  return std::stoull(text.substr(text.find(':') + 1));
}

// What the presses above change is on the screen before anything is measured.
void settle() {
  for (const auto end = Clock::now() + std::chrono::milliseconds(300); Clock::now() < end;)
    QApplication::processEvents(QEventLoop::AllEvents, 20);
}

enum class Log { Bytes, Text };

Outcome feed(kvr::window::Application& program, bench::Feeder& feeder, double seconds, double rate, bool clears,
             Log log) {
  Outcome result;
  auto& panel = program.form.tool;
  const QTemporaryDir folder;
  panel.txtLogFile.setText(folder.filePath(QStringLiteral("log.txt")).toStdString());
  panel.comb_LogForm.setListIndex(static_cast<int>(log));
  panel.txtLogSize.setText("100");
  panel.txtLogFiles.setText("3");
  panel.che_Log.userSet(true);
  panel.comClearCount.press();
  panel.comDebugClear[0].press();
  settle();
  const double memory = residentMb();
  const double cpu = cpuSeconds();
  const auto begin = Clock::now();
  feeder.start(seconds, rate);
  {
    kvr::window::Clicker clicker(program, kClickEvery);
    if (!clicker.found()) return result;
    for (auto cleared = begin; !feeder.ended();) {
      const double before = threadCpuMs();
      QApplication::processEvents(QEventLoop::WaitForMoreEvents);
      result.longestTurnMs = std::max(result.longestTurnMs, threadCpuMs() - before);
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
  const bool went = panel.che_Log.value();  // a failure takes the tick away
  panel.che_Log.userSet(false);
  result.logWhole = went && logIsWhole(program, folder.path(), result.written);
  result.counted = counted(program);
  return result;
}

bool good(const char* name, const Outcome& o) {
  std::printf(
      "# %s: %llu bytes in %.1f s, %llu counted, %zu clicks, slowest %.1f ms, longest turn %.1f ms of a core, cpu %.2f "
      "s, memory %+.1f MB\n",
      name, static_cast<unsigned long long>(o.written), o.seconds, static_cast<unsigned long long>(o.counted),
      o.clickMs.size(), o.clickMs.empty() ? 0 : bench::percentile(o.clickMs, 1), o.longestTurnMs, o.cpu, o.grownMb);
  std::fflush(stdout);
  if (o.written != o.counted || o.written == 0) std::printf("# %s: bytes were lost\n", name);
  if (!o.logWhole) std::printf("# %s: the log is not what was sent\n", name);
  if (o.clickMs.size() < static_cast<std::size_t>(o.seconds)) std::printf("# %s: clicks were lost\n", name);
  return o.logWhole && o.written == o.counted && o.written > 0 &&
         o.clickMs.size() >= static_cast<std::size_t>(o.seconds);
}

}  // namespace

int main(int argc, char** argv) {
  const bool isLong = argc > 1 && std::strcmp(argv[1], "--long") == 0;
  const bool longest = isLong && argc == 2;
  const double floodAlone = argc > 2 && std::strcmp(argv[1], "--flood") == 0 ? std::atof(argv[2]) : 0;
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
  form.tool.comb_TimeStamp.setListIndex(1);
  form.tool.comOpenCOM[0].press();
  if (!form.comTool.isOpen()) return 1;

  const auto cpuPerMb = [](const Outcome& o) { return o.cpu / (static_cast<double>(o.counted) / 1e6); };
  if (floodAlone > 0) {
    const auto flood = feed(program, feeder, floodAlone, 0, false, Log::Bytes);
    return good("flood", flood) && bench::atMost("terminal.cpu_s_per_mb", cpuPerMb(flood), "s", kFloodCpuLimit) ? 0 : 1;
  }

  const auto kept = feed(program, feeder, longest ? 600 : 20, kLineRate, false, Log::Text);
  const auto flood = feed(program, feeder, longest ? 60 : 20, 0, false, Log::Bytes);
  form.tool.che_KeepNewest.setValue(false);
  const auto cleared = feed(program, feeder, longest ? 600 : 20, kLineRate, true, Log::Bytes);
  bool whole = good("keep the newest", kept) & good("flood", flood) & good("clear each 5 s", cleared);
  if (isLong) {
    form.tool.che_KeepNewest.setValue(true);
    const double minutes = argc > 2 ? std::atof(argv[2]) : 120;
    const auto hours = feed(program, feeder, minutes * 60, kFastRate, false, Log::Bytes);
    whole = good("921600 baud", hours) &&
            bench::atMost("terminal.grown_mb_921k", hours.grownMb, "MB", kGrowthLimitMb) && whole;
  }

  if (!whole) return 1;
  const double rate = static_cast<double>(flood.counted) / flood.seconds / 1e6;
  const double clickMs = std::max({bench::percentile(kept.clickMs, 0.99), bench::percentile(flood.clickMs, 0.99),
                                   bench::percentile(cleared.clickMs, 0.99)});
  const double turnMs = std::max({kept.longestTurnMs, flood.longestTurnMs, cleared.longestTurnMs});
  const double cpuRatio = std::max(kept.cpu / kept.seconds, cleared.cpu / cleared.seconds);
  const double grownMb = std::max({kept.grownMb, flood.grownMb, cleared.grownMb});
  const double slowestMs = std::max(
      {bench::percentile(kept.clickMs, 1), bench::percentile(flood.clickMs, 1), bench::percentile(cleared.clickMs, 1)});
  const bool quick = bench::atLeast("terminal.mb_per_s", rate, "MB/s", kFloodLimit) &
                     bench::atMost("terminal.cpu_s_per_mb", cpuPerMb(flood), "s", kFloodCpuLimit) &
                     bench::atMost("terminal.turn_cpu_ms", turnMs, "ms", kTurnLimitMs) &
                     bench::atMost("terminal.click_ms_p99", clickMs, "ms", kSmoothLimitMs) &
                     bench::atMost("terminal.click_ms_max", slowestMs, "ms", kClickLimitMs) &
                     bench::atMost("terminal.cpu_ratio_256k", cpuRatio, "ratio", kCpuLimit) &
                     bench::atMost("terminal.grown_mb", grownMb, "MB", kGrowthLimitMb);
  return quick && form.comTool.isOpen() ? 0 : 1;
}
