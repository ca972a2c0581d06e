#include "cli/qt/signals.h"

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <QSocketNotifier>
#include <array>

namespace kvr::cli {
namespace {

// What a handler may touch: it runs at any moment.
std::array<int, 2> pipeEnds{-1, -1};
volatile sig_atomic_t seen = 0;

void onSignal(int number) {
  if (seen != 0 && number != SIGHUP) _exit(128 + seen);
  if (seen == 0) seen = number;
  const auto byte = static_cast<unsigned char>(number);
  if (::write(pipeEnds[1], &byte, 1) != 1) _exit(128 + number);
}

Cut cutOf(int number) {
  return number == SIGINT ? Cut::Interrupt : number == SIGHUP ? Cut::HangUp : Cut::Terminate;
}

}  // namespace

Signals::Signals(std::function<void(Cut)> handler) : handler_(std::move(handler)) {
  if (pipe2(pipeEnds.data(), O_CLOEXEC | O_NONBLOCK) != 0) return;
  notifier_ = std::make_unique<QSocketNotifier>(pipeEnds[0], QSocketNotifier::Read);
  QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(), [this] { take(); });
  struct sigaction action {};
  action.sa_handler = onSignal;
  action.sa_flags = SA_RESTART;
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) sigaction(number, &action, nullptr);
  action.sa_handler = SIG_IGN;
  sigaction(SIGPIPE, &action, nullptr);
}

Signals::~Signals() {
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) signal(number, SIG_DFL);
  notifier_.reset();
  for (int& end : pipeEnds) {
    if (end >= 0) close(end);
    end = -1;
  }
}

void Signals::take() {
  unsigned char number = 0;
  while (::read(pipeEnds[0], &number, 1) == 1) handler_(cutOf(number));
}

}  // namespace kvr::cli
