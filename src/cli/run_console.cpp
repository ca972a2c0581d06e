#include "cli/run_console.h"

#include <algorithm>

#include "platform/text.h"

namespace kvr::cli {
namespace {

constexpr platform::Millis kTick{250};

}  // namespace

RunConsole::RunConsole(const Desk& desk)
    : loop_(desk.loop),
      out_(desk.out),
      stopper_(desk.stopper),
      tickTimer_(
          desk.loop, [this] { tick(); }, platform::Timer::Kind::Periodic),
      limitTimer_(desk.loop) {
  tickTimer_.setInterval(kTick);
}

void RunConsole::limitWait(platform::Millis limit, std::function<void()> onTimeout) {
  line_.limit = std::chrono::duration<double>(limit).count();
  limitTimer_.setInterval(limit);
  limitTimer_.onTick(std::move(onTimeout));
}

void RunConsole::enter(engine::Stage stage) {
  line_ = {.stage = stage, .limit = line_.limit};
  stageBegan_ = loop_.now();
  const bool waiting = stage == engine::Stage::Wait;
  if (waiting && line_.limit > 0 && !limitTimer_.isActive()) limitTimer_.start();
  if (stage > engine::Stage::Wait) limitTimer_.stop();
  tickTimer_.start();
  tick();
  stopper_.chipInHand(stage > engine::Stage::Wait);
}

void RunConsole::tick() {
  line_.seconds = std::chrono::duration<double>(loop_.now() - stageBegan_).count();
  out_.stage(line_);
}

void RunConsole::progress(const engine::Progress& progress) {
  const int span = progress.maximum - progress.minimum;
  line_.fraction = span > 0 ? std::clamp(double(progress.value - progress.minimum) / span, 0.0, 1.0) : -1;
  line_.bytes = platform::valueOf(progress.kilobytes) * 1024;
}

void RunConsole::progressDone() {
  line_.fraction = -1;
  tickTimer_.stop();
}

void RunConsole::portStatus(const std::string& why) {
  if (!why.empty()) portTrouble_ = why;
}

}  // namespace kvr::cli
