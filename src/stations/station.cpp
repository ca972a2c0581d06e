#include "stations/station.h"

#include <utility>

#include "platform/qt/interrupt.h"

namespace kvr::stations {
namespace {

constexpr int kTryPortAgainMs = 2000;  // an adapter that is pulled out leaves the system in less
constexpr int kStopAgainMs = 5000;
constexpr const char* kGone = "The adapter is gone. Plug it in again.";

QString text(const std::string& words) {
  return QString::fromStdString(words);
}

std::string lastLine(QByteArray bytes) {
  bytes = bytes.trimmed();
  bytes = bytes.mid(bytes.lastIndexOf('\n') + 1);
  return (bytes.startsWith("kvr: ") ? bytes.mid(5) : bytes).toStdString();
}

}  // namespace

Station::Station(const std::string& command, std::function<std::string()> deviceOf)
    : command_(text(command)), deviceOf_(std::move(deviceOf)) {
  platform::keepFromTerminal(process_);
  next_.setSingleShot(true);
  again_.setSingleShot(true);
  QObject::connect(&next_, &QTimer::timeout, this, [this] { launch(); });
  QObject::connect(&again_, &QTimer::timeout, this, [this] { platform::interruptProcess(process_.processId()); });
  QObject::connect(&process_, &QProcess::readyReadStandardOutput, this, [this] { read(); });
  QObject::connect(&process_, &QProcess::finished, this, [this] { end(); });
  QObject::connect(&process_, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
    if (error == QProcess::FailedToStart) end();  // no other signal comes then
  });
}

// A process that is still there is left to finish its chip, which it does when its standard input ends.
Station::~Station() {
  process_.disconnect(this);
  if (!busy()) return;
  process_.closeWriteChannel();
  process_.waitForFinished(-1);
}

QStringList Station::arguments(const std::string& device) const {
  QStringList words = {QStringLiteral("--json"),
                       QStringLiteral("program"),
                       QStringLiteral("--project"),
                       text(work_.project),
                       QStringLiteral("--port"),
                       text(device),
                       QStringLiteral("--forever"),
                       QStringLiteral("--delay"),
                       QString::number(work_.delaySeconds),
                       QStringLiteral("--end-with-input")};
  if (!work_.batch.empty())
    words << QStringLiteral("--batch") << text(work_.batch) << QStringLiteral("--station") << text(tile_.name);
  return words;
}

void Station::start(const Work& work) {
  if (tile_.running || busy()) return;
  work_ = work;
  tile_.failedInARow = 0;
  tile_.chipLeft = false;
  launch();
}

void Station::launch() {
  next_.stop();
  if (busy()) return;
  asked_ = false;
  tile_.running = !tile_.port.empty();
  const std::string device = deviceOf_();
  tile_.adapterGone = tile_.running && device.empty();
  tile_.words = !tile_.running ? "Choose a port." : tile_.adapterGone ? kGone : "Starting";
  if (tile_.adapterGone && signs::isVerdict(tile_.sign)) tile_.last = tile_.sign;
  if (tile_.adapterGone) tile_.sign = signs::Sign::Ready;
  if (!device.empty()) process_.start(command_, arguments(device));
  tell();
}

void Station::stop() {
  if (!busy()) return rest();
  asked_ = true;
  next_.stop();
  tile_.words = "Stopping";
  platform::interruptProcess(process_.processId());
  again_.start(kStopAgainMs);
  tell();
}

void Station::finish() {
  if (!busy()) return rest();
  asked_ = true;
  next_.stop();
  process_.closeWriteChannel();
  tell();
}

void Station::rest() {
  next_.stop();
  if (tile_.running) tile_.words.clear();
  tile_.running = tile_.adapterGone = false;
  tell();
}

void Station::lookForAdapter() {
  if (busy() || !tile_.running) return;
  const bool there = !deviceOf_().empty();
  if (tile_.adapterGone && there) launch();
  if (!tile_.adapterGone && !there && waits_) waitForAdapter();
}

void Station::clear() {
  tile_.counts = {};
  tile_.lastFailure.clear();
  tell();
}

void Station::follow(Follow next) {
  tile_.running = next != Follow::Rest;
  waits_ = next == Follow::WaitForAdapter;
  if (waits_) waitForAdapter();
  if (next == Follow::NextChip) next_.start(static_cast<int>(work_.delaySeconds * 1000));
  tell();
}

// Gone: until it is there again. Taken by another program, or not readable yet: it is tried again.
void Station::waitForAdapter() {
  tile_.adapterGone = deviceOf_().empty();
  if (tile_.adapterGone) tile_.words = kGone;
  if (!tile_.adapterGone) next_.start(kTryPortAgainMs);
  tell();
}

void Station::tell() {
  const bool verdict = std::exchange(told_, tile_.sign) != tile_.sign && signs::isVerdict(tile_.sign);
  if (verdict && onVerdict) onVerdict(tile_.sign);  // which may end this station, and so come here again
  if (changed) changed();
}

void Station::read() {
  while (process_.canReadLine()) {
    QByteArray line = process_.readLine();
    while (line.endsWith('\n')) line.chop(1);
    const auto event = readEvent({line.constData(), static_cast<std::size_t>(line.size())});
    if (!event) continue;
    take(tile_, *event);
    tell();
  }
}

void Station::end() {
  again_.stop();
  read();
  const bool unstarted = process_.error() == QProcess::FailedToStart;
  const ProcessEnd how{.crashed = !unstarted && process_.exitStatus() == QProcess::CrashExit,
                       .code = process_.exitCode(),
                       .asked = asked_,
                       .complaint = unstarted ? "kvr could not be started: " + process_.errorString().toStdString()
                                              : lastLine(process_.readAllStandardError())};
  follow(takeEnd(tile_, how, work_.handsFree));
}

}  // namespace kvr::stations
