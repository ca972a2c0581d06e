#include "engine/line_recorder.h"

#include <algorithm>
#include <cstdlib>

#include "platform/text.h"

namespace kvr::engine {
namespace {

using Kind = TraceEvent::Kind;

constexpr platform::Micros kSlowestByte{20000};  // of a line of 600 baud
constexpr std::int64_t kRounding = 2;            // microseconds by which bytes at an even pace may seem uneven
constexpr std::size_t kLongestAnswer = 256;
constexpr std::size_t kShortestDataFrame = 40;  // no other frame of the host is as long

// What may be left out, the most dispensable first.
enum class Weight { DataFrame, Byte, Mark };

Weight weightOf(const TraceEvent& event) {
  if (event.kind == Kind::Sent && event.bytes.size() >= kShortestDataFrame) return Weight::DataFrame;
  const bool onLine = event.kind == Kind::Sent || event.kind == Kind::Received || event.kind == Kind::Thinned;
  return onLine ? Weight::Byte : Weight::Mark;
}

// Whether one byte more at `now` keeps the pace of those before, so that first and last time tell those of all.
bool keepsPace(const TraceEvent& event, platform::Micros now) {
  const auto gap = now - event.last;
  const auto gaps = static_cast<std::int64_t>(event.bytes.size()) - 1;
  if (gap > kSlowestByte) return false;
  if (gaps == 0) return true;
  const std::int64_t off = (now - event.at).count() * gaps - (event.last - event.at).count() * (gaps + 1);
  return std::abs(off) <= kRounding * (gaps + 1);
}

void fold(TraceEvent& gap, const TraceEvent& event) {
  const bool folded = event.kind == Kind::Thinned;
  const std::size_t bytes = folded ? static_cast<std::size_t>(platform::wholeOf(event.text))
                                   : event.bytes.size() * static_cast<std::size_t>(event.times);
  gap.text = std::to_string(static_cast<std::size_t>(platform::wholeOf(gap.text)) + bytes);
  gap.times += event.times;
  gap.last = event.last;
}

}  // namespace

void LineRecorder::begin() {
  events_.clear();
  cost_ = 0;
  began_ = loop_.now();
  on_ = true;
}

void LineRecorder::note(Kind kind, std::string text, TraceEvent::Failure why) {
  if (!on_) return;
  if (onEvent) tell({.kind = kind, .text = text, .why = why});
  add({.kind = kind, .text = std::move(text), .why = why});
}

void LineRecorder::tell(TraceEvent event) const {
  event.at = event.last = now();
  onEvent(event);
}

// A sync loop sends the same bytes for as long as it takes the operator to find the switch.
void LineRecorder::sent(std::span<const std::uint8_t> bytes) {
  if (!on_) return;
  if (onEvent) tell({.kind = Kind::Sent, .bytes = {bytes.begin(), bytes.end()}});
  if (!events_.empty() && events_.back().kind == Kind::Sent && std::ranges::equal(events_.back().bytes, bytes)) {
    ++events_.back().times;
    events_.back().last = now();
    return;
  }
  add({.kind = Kind::Sent, .bytes = {bytes.begin(), bytes.end()}});
}

void LineRecorder::received(std::span<const std::uint8_t> bytes) {
  if (!on_ || bytes.empty()) return;
  if (onEvent) tell({.kind = Kind::Received, .bytes = {bytes.begin(), bytes.end()}});
  TraceEvent* const before = events_.empty() ? nullptr : &events_.back();
  if (before && before->kind == Kind::Received && bytes.size() == 1 && before->bytes.size() < kLongestAnswer &&
      keepsPace(*before, now())) {
    before->bytes.push_back(bytes[0]);
    before->last = now();
    ++cost_;
    return;
  }
  add({.kind = Kind::Received, .bytes = {bytes.begin(), bytes.end()}});
}

void LineRecorder::add(TraceEvent event) {
  event.at = event.last = now();
  cost_ += costOf(event);
  events_.push_back(std::move(event));
  if (cost_ > bounds_.most) thin();
}

// Down to three quarters, so that it is not done for every frame.
void LineRecorder::thin() {
  const std::size_t target = bounds_.most / 4 * 3;
  for (const Weight least : {Weight::DataFrame, Weight::Byte, Weight::Mark}) {
    if (cost_ <= bounds_.most) return;
    std::vector<TraceEvent> kept;
    const std::size_t whole = cost_;
    std::size_t passed = 0;
    for (TraceEvent& event : events_) {
      const std::size_t cost = costOf(event);
      passed += cost;
      const bool middle = passed > bounds_.kept && whole - passed >= bounds_.kept;
      if (!middle || weightOf(event) > least || cost_ <= target) {
        kept.push_back(std::move(event));
        continue;
      }
      cost_ -= cost;
      if (kept.empty() || kept.back().kind != Kind::Thinned) {
        kept.push_back({.kind = Kind::Thinned, .at = event.at, .last = event.at, .times = 0, .text = "0"});
        cost_ += costOf(kept.back());
      }
      fold(kept.back(), event);
    }
    events_ = std::move(kept);
    cost_ = 0;
    for (const TraceEvent& event : events_) cost_ += costOf(event);
  }
}

}  // namespace kvr::engine
