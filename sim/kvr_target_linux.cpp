// A simulated target behind a pseudo-terminal, for the real program to talk to. This file is the only one of the
// simulator that knows an operating system.
#include <fcntl.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/inotify.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/select.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <asm/termbits.h>  // termios2: rates that have no name of their own

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "sim/target.h"

namespace {

// What the host has not taken yet holds the device up beyond this: no byte of a fast talker is lost on a terminal.
constexpr std::size_t kLargestBacklog = 65536;

sim::Micros clockNow() {
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  return std::chrono::duration_cast<std::chrono::microseconds>(now).count();
}

// Signals come in turn with everything else, as something to read.
class Signals {
 public:
  Signals() {
    sigset_t wanted;
    sigemptyset(&wanted);
    for (const int number : {SIGTERM, SIGINT, SIGUSR1}) sigaddset(&wanted, number);
    sigprocmask(SIG_BLOCK, &wanted, nullptr);
    handle_ = signalfd(-1, &wanted, SFD_NONBLOCK | SFD_CLOEXEC);
  }
  ~Signals() { ::close(handle_); }
  int handle() const { return handle_; }
  int next() const {  // 0 when there is none
    signalfd_siginfo info{};
    return read(handle_, &info, sizeof info) == sizeof info ? static_cast<int>(info.ssi_signo) : 0;
  }

 private:
  int handle_ = -1;
};

// The pair of terminals. The slave is kept open here as well, so that the pair lives on while no host has it open; who
// else opens and closes it is learnt from the file system.
class Terminal {
 public:
  bool open() {
    master_ = posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (master_ < 0 || grantpt(master_) != 0 || unlockpt(master_) != 0) return false;
    name_ = ptsname(master_);
    slave_ = ::open(name_.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    watch_ = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    if (slave_ < 0 || watch_ < 0) return false;
    makeRaw();
    // The system folds an event into the one before it when they are alike, and a host may open twice in a row. With
    // the folder watched, too, every event of the terminal has the folder's ahead of it, and none is lost.
    const std::string folder = name_.substr(0, name_.rfind('/'));
    if (inotify_add_watch(watch_, folder.c_str(), IN_OPEN | IN_CLOSE) < 0) return false;
    itself_ = inotify_add_watch(watch_, name_.c_str(), IN_OPEN | IN_CLOSE);
    return itself_ >= 0;
  }
  ~Terminal() {
    for (const int fd : {master_, slave_, watch_})
      if (fd >= 0) ::close(fd);
  }

  const std::string& name() const { return name_; }
  int master() const { return master_; }
  int watch() const { return watch_; }

  int baud() const {
    termios2 settings{};
    if (ioctl(slave_, TCGETS2, &settings) != 0 || settings.c_ospeed == 0) return 9600;
    return static_cast<int>(settings.c_ospeed);
  }
  // How many times the host has closed the terminal and opened it since the last call; `isOpen` afterwards.
  int closings() {
    alignas(inotify_event) char buffer[4096];
    int closed = 0;
    for (ssize_t got = read(watch_, buffer, sizeof buffer); got > 0; got = read(watch_, buffer, sizeof buffer))
      for (ssize_t at = 0; at < got;) {
        inotify_event event{};
        std::memcpy(&event, buffer + at, sizeof event);
        at += static_cast<ssize_t>(sizeof event + event.len);
        if (event.wd != itself_) continue;
        opened_ += (event.mask & IN_OPEN) ? 1 : -1;
        closed += (event.mask & IN_OPEN) ? 0 : 1;
      }
    return closed;
  }
  bool isOpen() const { return opened_ > 0; }
  // What was said to a host that is gone is not kept for the next one.
  void forget() {
    ioctl(slave_, TCFLSH, TCIFLUSH);
    backlog_.clear();
  }

  std::vector<std::uint8_t> take() const {
    std::vector<std::uint8_t> bytes(65536);
    const ssize_t got = read(master_, bytes.data(), bytes.size());
    bytes.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
    return bytes;
  }
  // Hands over as much as the host's side takes; the rest waits for it.
  void give(const std::vector<std::uint8_t>& bytes) {
    backlog_.insert(backlog_.end(), bytes.begin(), bytes.end());
    while (!backlog_.empty()) {
      const ssize_t put = write(master_, backlog_.data(), backlog_.size());
      if (put <= 0) return;
      backlog_.erase(backlog_.begin(), backlog_.begin() + put);
    }
  }
  std::size_t backlog() const { return backlog_.size(); }

 private:
  void makeRaw() const {
    termios2 settings{};
    ioctl(slave_, TCGETS2, &settings);
    settings.c_iflag = settings.c_oflag = settings.c_lflag = 0;
    settings.c_cflag = CS8 | CREAD | CLOCAL | B9600;
    ioctl(slave_, TCSETS2, &settings);
  }

  int master_ = -1, slave_ = -1, watch_ = -1;
  int itself_ = -1;  // the terminal among what is watched
  int opened_ = 0;
  std::vector<std::uint8_t> backlog_;
  std::string name_;
};

// Written beside and renamed, so that a reader finds the old report or the new one, never half of one.
bool writeReport(const std::string& path, const std::string& text) {
  const std::string beside = path + ".new";
  std::FILE* file = std::fopen(beside.c_str(), "w");
  if (!file) return false;
  const bool whole = std::fwrite(text.data(), 1, text.size(), file) == text.size();
  return (std::fclose(file) == 0) && whole && std::rename(beside.c_str(), path.c_str()) == 0;
}

bool readText(const std::string& path, std::string& text) {
  std::ifstream file(path, std::ios::binary);
  text.assign(std::istreambuf_iterator<char>(file), {});
  return file.is_open();
}

void followHost(Terminal& terminal, sim::Target& target, sim::Micros now) {
  const bool wasOpen = target.wire().isOpen();
  const int closings = terminal.closings();
  if (closings > 0 && wasOpen) {
    target.wire().hangUp(now);
    if (!terminal.isOpen()) terminal.forget();
  }
  if (!terminal.isOpen()) return;
  const int baud = terminal.baud();
  // The settings were changed some time after the opening, and no event tells of it.
  const sim::Line line{baud, target.current().parityOf(baud, {})};
  target.wire().assumeHostLine(line);
  if (!target.wire().isOpen()) target.wire().open(line, now);
}

void hearHost(Terminal& terminal, sim::Target& target, sim::Micros now) {
  const auto bytes = terminal.take();
  if (bytes.empty()) return;
  const int baud = terminal.baud();
  const sim::Line line{baud, target.current().parityOf(baud, bytes)};
  target.wire().assumeHostLine(line);
  target.wire().open(line, now);
  target.wire().write(bytes, now);
}

void sleepUntilSomethingHappens(const Terminal& terminal, const sim::Target& target, const Signals& signals) {
  fd_set reading, writing;
  FD_ZERO(&reading);
  FD_ZERO(&writing);
  int highest = 0;
  for (const int handle : {terminal.master(), terminal.watch(), signals.handle()}) {
    FD_SET(handle, &reading);
    highest = std::max(highest, handle);
  }
  if (terminal.backlog() > 0) FD_SET(terminal.master(), &writing);
  timeval limit{};
  const auto due = terminal.backlog() > kLargestBacklog ? std::nullopt : target.nextDue();
  if (due) {
    const sim::Micros left = std::max<sim::Micros>(0, *due - clockNow());
    limit.tv_sec = static_cast<time_t>(left / sim::kSecond);
    limit.tv_usec = static_cast<suseconds_t>(left % sim::kSecond);
  }
  select(highest + 1, &reading, &writing, nullptr, due ? &limit : nullptr);
}

void run(Terminal& terminal, sim::Target& target, const std::string& jsonPath, const Signals& signals) {
  for (int signal = 0; signal != SIGTERM && signal != SIGINT; signal = signals.next()) {
    const sim::Micros now = clockNow();
    if (signal == SIGUSR1) target.powerCycle(now);
    hearHost(terminal, target, now);
    followHost(terminal, target, now);
    if (terminal.backlog() <= kLargestBacklog) target.advanceTo(now);
    terminal.give(target.wire().takeArrived());
    if (target.takeReportDue() && !jsonPath.empty()) writeReport(jsonPath, target.report());
    if (target.ended()) return;
    sleepUntilSomethingHappens(terminal, target, signals);
  }
}

int fail(const std::string& why) {
  std::fprintf(stderr, "kvr-target: %s\n", why.c_str());
  return 2;
}

}  // namespace

int main(int argc, char** argv) {
  sim::ParsedOptions parsed = sim::parseTargetOptions({argv + 1, argv + argc});
  if (parsed.options.help) return std::fputs(sim::targetUsage().c_str(), stdout), 0;
  if (!parsed.error.empty()) return fail(parsed.error);
  sim::TargetOptions& options = parsed.options;
  if (!options.replayPath.empty() && !readText(options.replayPath, options.replayText))
    return fail("cannot read " + options.replayPath);
  sim::Target target(options, clockNow());
  if (!target.error().empty()) return fail(target.error());
  Terminal terminal;
  if (!terminal.open()) return fail(std::string("no pseudo-terminal: ") + std::strerror(errno));
  prctl(PR_SET_TIMERSLACK, 1);  // the system would add 50 us to each wait, and a chip is on time
  const Signals signals;
  if (!options.linkPath.empty()) {
    unlink(options.linkPath.c_str());
    if (symlink(terminal.name().c_str(), options.linkPath.c_str()) != 0)
      return fail("cannot make " + options.linkPath + ": " + std::strerror(errno));
  }
  std::printf("%s\n", terminal.name().c_str());
  std::fflush(stdout);
  run(terminal, target, options.jsonPath, signals);
  if (!options.jsonPath.empty() && !writeReport(options.jsonPath, target.report()))
    return fail("cannot write " + options.jsonPath);
  if (!options.linkPath.empty()) unlink(options.linkPath.c_str());
  return 0;
}
