#include "engine/trace_frames.h"

#include <algorithm>
#include <limits>
#include <map>
#include <optional>

#include "engine/board_crc.h"
#include "engine/frames.h"
#include "engine/run_tracer.h"
#include "engine/trace_text.h"
#include "platform/text.h"

namespace kvr::engine {
namespace {

using Kind = TraceEvent::Kind;
using Span = std::span<const std::uint8_t>;
using Sum = TraceFrame::Sum;

constexpr platform::Micros kBetweenAnswers{50000};  // after it, what comes is another answer
constexpr std::size_t kShownBytes = 16;

// The three conversations, by what they say of themselves: how their commands are called.
using Names = std::map<int, const char*>;
const Names kChipNames = {{0x00, "data"},     {0x30, "data again"}, {0x50, "read status"}, {0x65, "measure"},
                          {0x69, "finish"},   {0x80, "ping"},       {0x82, "end session"}, {0x84, "erase"},
                          {0x86, "watchdog"}, {0x8A, "sync"},       {0x8D, "options"},     {0x8E, "change rate"},
                          {0x8F, "test rate"}};
const Names kBoardNames = {{0x00, "data"},   {0x30, "data again"}, {0x80, "poll"},         {0x0C, "version"},
                           {0x0E, "memory"}, {0x84, "erase"},      {0x86, "second stage"}, {0xF0, "wake"}};
const Names kDemoNames = {{0xB0, "connect"}, {0xB1, "finish"},     {0xB2, "erase"},
                          {0xB3, "data"},    {0xB4, "data again"}, {0xB5, "read model"}};

SumForm formOf(const Trace& trace) {
  if (trace.field("run") == kindText(RunKind::Board)) return SumForm::BoardCrc;
  const auto* row = catalogue::findByName(trace.field("model"));
  return row ? sumFormOf(*row) : SumForm::OneByte;
}

unsigned plainSum(Span bytes) {
  unsigned sum = 0;
  for (const std::uint8_t byte : bytes) sum += byte;
  return sum;
}

// One frame as it lies in a run of bytes.
struct Found {
  std::size_t begin = 0, size = 0;
  std::size_t commandAt = 0;  // in the frame
  bool demo = false;
  bool sumGood = false;
};

// `at`: the direction byte.
std::optional<Found> chipFrameAt(Span bytes, std::size_t at, SumForm form) {
  if (at + 3 > bytes.size() || (bytes[at] != 0x68 && bytes[at] != 0x6A) || bytes[at + 1] != 0) return std::nullopt;
  const std::size_t length = bytes[at + 2], sumSize = form == SumForm::OneByte ? 1 : 2;
  if (length < 5 + sumSize || at + length > bytes.size() || bytes[at + length - 1] != 0x16) return std::nullopt;
  const Span body = bytes.subspan(at, length - 1 - sumSize), tail = bytes.subspan(at + length - 1 - sumSize, sumSize);
  const unsigned sum = form == SumForm::BoardCrc ? boardCrc(body) : plainSum(body);
  const unsigned told = sumSize == 1                ? tail[0]
                        : form == SumForm::BoardCrc ? unsigned{tail[0]} | unsigned{tail[1]} << 8
                                                    : unsigned{tail[0]} << 8 | unsigned{tail[1]};
  const bool paired = at >= 2 && bytes[at - 2] == 0x46 && bytes[at - 1] == 0xB9;
  const std::size_t begin = paired ? at - 2 : at;
  return Found{begin, at + length - begin, at - begin + 3, false, (sum & (sumSize == 1 ? 0xFF : 0xFFFF)) == told};
}

std::optional<Found> demoFrameAt(Span bytes, std::size_t at) {
  if (at + 8 > bytes.size() || bytes[at] != 0x5A || bytes[at + 1] != 0xA5) return std::nullopt;
  const std::size_t length = bytes[at + 2] * 256u + bytes[at + 3];
  if (length < 8 || at + length > bytes.size() || bytes[at + length - 1] != 0x16) return std::nullopt;
  const unsigned told = bytes[at + length - 3] * 256u + bytes[at + length - 2];
  return Found{at, length, 4, true, (plainSum(bytes.subspan(at, length - 3)) & 0xFFFF) == told};
}

std::optional<Found> findFrame(Span bytes, SumForm form) {
  for (std::size_t at = 0; at < bytes.size(); ++at) {
    if (auto demo = demoFrameAt(bytes, at)) return demo;
    if (auto chip = chipFrameAt(bytes, at, form)) return chip;
  }
  return std::nullopt;
}

std::string kindOf(Span frame, const Found& found, SumForm form, bool toTarget) {
  const std::uint8_t command = frame[found.commandAt];
  if (!toTarget) return "answer " + platform::hexText(command, 2);
  const Names& names = found.demo ? kDemoNames : form == SumForm::BoardCrc ? kBoardNames : kChipNames;
  const auto name = names.find(command);
  if (name == names.end()) return "command " + platform::hexText(command, 2);
  const std::string kind = name->second;
  const std::size_t at = found.commandAt + 1;
  if (!kind.starts_with("data") || frame.size() < at + 4) return kind;
  const std::uint32_t address =
      std::uint32_t{frame[at + 1]} << 16 | std::uint32_t{frame[at + 2]} << 8 | std::uint32_t{frame[at + 3]};
  return kind + " " + platform::hexText(address, 4);
}

bool endsInAGoodFrame(Span bytes, SumForm form) {
  while (const auto found = findFrame(bytes, form)) {
    bytes = bytes.subspan(found->begin + found->size);
    if (found->sumGood && bytes.empty()) return true;
  }
  return false;
}

std::string looseKind(Span bytes, bool toTarget) {
  const auto all = [&](int value) { return std::ranges::all_of(bytes, [=](int byte) { return byte == value; }); };
  return toTarget && (all(0x7F) || all(0xFE)) ? "sync" : "bytes";
}

std::string padded(std::string text, std::size_t width, bool right = false) {
  text.insert(right ? 0 : text.size(), width - std::min(width, text.size()), ' ');
  return text;
}

}  // namespace

void FrameDecoder::take(const TraceEvent& event) {
  if (event.kind == Kind::Sent) return takeSent(event);
  if (event.kind == Kind::Said) return;
  const bool goesOn = event.kind == Kind::Received && event.at - answer_.last < kBetweenAnswers;
  if (!goesOn || again_.times > 0) flush();
  again_ = {};
  if (event.kind == Kind::Stage) {
    stage_ = event.text;
  } else if (event.kind != Kind::Received) {
    tellMark(event);
  } else {
    if (answer_.bytes.empty()) answer_.at = event.at;
    answer_.bytes.insert(answer_.bytes.end(), event.bytes.begin(), event.bytes.end());
    answer_.last = event.last;
    if (endsInAGoodFrame(answer_.bytes, form_)) flush();
  }
}

void FrameDecoder::takeSent(const TraceEvent& event) {
  constexpr int kMost = std::numeric_limits<int>::max();
  if (event.bytes == again_.bytes && answer_.bytes.empty() && event.times <= kMost - again_.times) {
    if (again_.times == 0) again_.at = event.at;
    again_.times += event.times;
    return;
  }
  flush();
  cut(event, true);
  again_ = event;
  again_.times = 0;
}

void FrameDecoder::flush() {
  if (again_.times > 0) cut(again_, true);
  again_.times = 0;
  if (!answer_.bytes.empty()) cut(answer_, false);
  answer_.bytes.clear();
}

void FrameDecoder::cut(const TraceEvent& event, bool toTarget) {
  Span rest(event.bytes);
  while (!rest.empty()) {
    const auto found = findFrame(rest, form_);
    const std::size_t loose = found ? found->begin : rest.size();
    if (loose > 0) tell(event, toTarget, rest.first(loose), looseKind(rest.first(loose), toTarget), Sum::None);
    if (!found) return;
    const Span frame = rest.subspan(found->begin, found->size);
    tell(event, toTarget, frame, kindOf(frame, *found, form_, toTarget), found->sumGood ? Sum::Good : Sum::Bad);
    rest = rest.subspan(found->begin + found->size);
  }
}

void FrameDecoder::tell(const TraceEvent& event, bool toTarget, Span bytes, const std::string& kind, Sum sum) {
  sink_({event.at, stage_, toTarget, kind, {bytes.begin(), bytes.end()}, event.times, sum, {}});
}

void FrameDecoder::tellMark(const TraceEvent& event) {
  static const std::map<Kind, const char*> kMarks = {
      {Kind::Settings, "line"}, {Kind::Open, "open"}, {Kind::Close, "close"}, {Kind::Dtr, "dtr"},
      {Kind::Rts, "rts"},       {Kind::Gone, "gone"}, {Kind::Stop, "stop"},   {Kind::Thinned, "thinned"}};
  sink_({event.at, stage_, true, kMarks.at(event.kind), {}, event.times, Sum::None, event.text});
}

std::vector<TraceFrame> framesOf(const Trace& trace) {
  std::vector<TraceFrame> frames;
  FrameDecoder decoder(formOf(trace), [&](const TraceFrame& frame) { frames.push_back(frame); });
  for (const TraceEvent& event : trace.events) decoder.take(event);
  decoder.flush();
  return frames;
}

std::string frameLine(const TraceFrame& frame) {
  const double seconds = static_cast<double>(frame.at.count()) / 1e6;
  std::string line = padded(platform::fixedText(seconds, 6), 12, true) + "  " + padded(frame.stage, 9) + " ";
  if (frame.bytes.empty()) return line + "   " + frame.kind + (frame.text.empty() ? "" : " " + frame.text);
  line += (frame.toTarget ? ">  " : "<  ") + padded(frame.kind, 16);
  line += padded(std::to_string(frame.bytes.size()), 5, true) + " bytes";
  if (frame.sum != TraceFrame::Sum::None) line += frame.sum == TraceFrame::Sum::Good ? ", sum good" : ", SUM BAD";
  if (frame.times > 1) line += ", " + std::to_string(frame.times) + " times";
  if (frame.sum != TraceFrame::Sum::Good)
    line += ": " + hexLine(Span(frame.bytes).first(std::min(frame.bytes.size(), kShownBytes))) +
            (frame.bytes.size() > kShownBytes ? " ..." : "");
  return line;
}

}  // namespace kvr::engine
