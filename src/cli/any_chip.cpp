#include "cli/any_chip.h"

#include <algorithm>
#include <utility>

#include "engine/chip_run.h"

namespace kvr::cli {
namespace {

using catalogue::McuRecord;
using platform::Instant;
using platform::Millis;

constexpr Millis kLook{20};      // how often a turn looks whether its time is over
constexpr Millis kTurn{1500};    // of a chip that says nothing
constexpr Millis kSilence{100};  // after an answer that nobody understood

// Whether chips of both are called and understood in the same way.
bool calledAlike(const McuRecord& a, const McuRecord& b) {
  return a.parityUsed == b.parityUsed && a.parityEven == b.parityEven && a.frame2 == b.frame2 &&
         traitsOf(a).pulses() == traitsOf(b).pulses();
}

// A model for each way.
std::vector<const McuRecord*> waysOfCalling() {
  std::vector<const McuRecord*> ways;
  for (const McuRecord& row : catalogue::allRows())
    if (row.listed && std::ranges::none_of(ways, [&](const McuRecord* way) { return calledAlike(*way, row); }))
      ways.push_back(&row);
  return ways;
}

// The row of what a chip has told, by its letter, too: families share codes. Null: unknown.
const McuRecord* rowOf(const engine::ChipSeen& chip) {
  const auto family = catalogue::familyOf(chip.firmware.empty() ? ' ' : chip.firmware.back());
  const McuRecord* named = catalogue::findByName(chip.model);
  if (!named || !family || named->family == *family) return named;
  const auto rows = catalogue::allRows();
  const auto row = std::ranges::find_if(
      rows, [&](const McuRecord& other) { return other.family == *family && other.code == chip.code; });
  return row == rows.end() ? named : &*row;
}

// Keeps the words of a turn until it is known that they tell something, and the wait of all turns is one.
class TurnView : public engine::SilentView {
 public:
  explicit TurnView(engine::RunView& below) : below_(below) {}
  void say(const std::string& line) override { lines_.push_back(line); }
  void append(const std::string& text) override {
    if (lines_.empty()) lines_.emplace_back();
    lines_.back() += text;
  }
  void enter(engine::Stage stage) override {
    answered = stage > engine::Stage::Wait;
    if (stage == engine::Stage::Wait && !std::exchange(waits_, true)) below_.enter(stage);
  }
  void portStatus(const std::string& why) override { below_.portStatus(why); }
  void chipLabels(const std::vector<std::string>& texts) override { below_.chipLabels(texts); }

  void forget() { lines_.clear(); }
  void rename(const std::string& from, const std::string& to) {
    for (std::string& line : lines_)
      if (const std::size_t at = line.find(from); !from.empty() && at != std::string::npos)
        line.replace(at, from.size(), to);
  }
  void tell() {
    if (answered) below_.enter(engine::Stage::Identify);
    for (const std::string& line : lines_) below_.say(line);
  }
  bool answered = false;  // in this turn

 private:
  engine::RunView& below_;
  std::vector<std::string> lines_;
  bool waits_ = false;
};

class Turns {
 public:
  Turns(const Desk& desk, TurnView& view, const Evidence& evidence)
      : desk_(desk),
        view_(view),
        evidence_(evidence),
        timer_(
            desk.loop, [this] { look(); }, platform::Timer::Kind::Periodic) {
    timer_.setInterval(kLook);
    desk.stopper.stop.onRequest = [this, before = before_] {
      if (before) before();
      stop_.request();
    };
  }
  ~Turns() { desk_.stopper.stop.onRequest = before_; }
  Turns(const Turns&) = delete;
  Turns& operator=(const Turns&) = delete;

  engine::Outcome take(const engine::Job& job) {
    stop_.clear();
    if (desk_.stopper.stop.requested()) stop_.request();
    view_.forget();
    view_.answered = false;
    limit_ = kTurn + (job.power.line ? job.power.off : Millis(0));
    began_ = desk_.loop.now();
    timer_.start();
    engine::Outcome outcome =
        evidence_.watch(desk_, view_, engine::RunKind::Check, job, {}, [&](engine::RunView& view) {
          return engine::ChipRun(job, {desk_.loop, desk_.clock, desk_.lease, stop_}, view).check();
        });
    timer_.stop();
    return outcome;
  }
  // The turn ended because its time was over.
  bool over() const { return stop_.requested() && !desk_.stopper.stop.requested(); }

 private:
  void look() {
    if (view_.answered) return timer_.stop();
    const Instant heard = desk_.lease.lastByteAt(), now = desk_.loop.now();
    const bool misheard = heard > began_ && now - heard >= kSilence;
    const bool arriving = heard > began_ && !misheard;
    if (misheard || now - began_ >= (arriving ? 2 * limit_ : limit_)) stop_.request();
  }

  const Desk& desk_;
  TurnView& view_;
  const Evidence& evidence_;
  std::function<void()> before_ = desk_.stopper.stop.onRequest;
  engine::RunStop stop_;
  platform::Timer timer_;
  Instant began_{0};
  Millis limit_{};
};

}  // namespace

engine::Job checkJob(const McuRecord& model, const JobArguments& arguments) {
  engine::Job job{.model = catalogue::describeModel(model), .choices = options::defaultValues(model.family)};
  arguments.setLine(job);
  return job;
}

Look lookAtAnyChip(const Desk& desk, engine::RunView& view, const JobArguments& arguments, const Evidence& evidence) {
  const auto ways = waysOfCalling();
  TurnView words(view);
  Turns turns(desk, words, evidence);
  const McuRecord* own = nullptr;  // what the chip has said it is
  for (std::size_t turn = 0, nameless = 0;; ++turn) {
    const McuRecord& model = own ? *own : *ways[turn % ways.size()];
    Look look{.job = checkJob(model, arguments), .outcome = {}};
    look.outcome = turns.take(look.job);
    const bool asItself = own == &model;
    own = look.outcome.chip ? rowOf(*look.outcome.chip) : nullptr;
    if (turns.over()) continue;
    // A chip may answer a call that is not made for it, and then tells nothing about itself, or is misunderstood.
    if (!own && look.outcome.chip && !look.outcome.passed() && ++nameless < ways.size()) continue;
    if (own && !asItself && !calledAlike(*own, model)) continue;
    if (own) words.rename(std::exchange(look.outcome.chip->model, own->name), std::string(own->name));
    words.tell();
    return look;
  }
}

}  // namespace kvr::cli
