#include "engine/trace_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>

#include "platform/text.h"

namespace kvr::engine {
namespace {

using Kind = TraceEvent::Kind;
using Failure = TraceEvent::Failure;

constexpr std::array<std::string_view, 12> kWords = {"line", "open", "close", "dtr", "rts",  ">",
                                                     "<",    "gone", "stage", "say", "stop", "thinned"};
constexpr std::array<std::string_view, 7> kFailures = {"",         "no device", "denied", "busy", "bad settings",
                                                       "vanished", "other"};
constexpr std::size_t kTimeWidth = 12;

// One line, whatever the text holds.
std::string escaped(std::string_view text) {
  std::string line;
  for (const char c : text) {
    if (c == '\\')
      line += "\\\\";
    else if (c == '\n')
      line += "\\n";
    else if (c == '\r')
      line += "\\r";
    else
      line += c;
  }
  return line;
}

std::string plain(std::string_view line) {
  std::string text;
  for (std::size_t i = 0; i < line.size(); ++i) {
    const bool pair = line[i] == '\\' && i + 1 < line.size();
    if (!pair)
      text += line[i];
    else if (const char c = line[++i]; c == 'n')
      text += '\n';
    else
      text += c == 'r' ? '\r' : c;
  }
  return text;
}

std::string timeText(platform::Micros time) {
  const auto micros = time.count();
  return std::to_string(micros / 1000000) + "." + platform::padLeft(std::to_string(micros % 1000000), 6);
}

// Words for the user begin with whatever they begin with.
bool isBracketed(Kind kind) {
  return kind != Kind::Said && kind != Kind::Stage;
}

// What is in brackets before the bytes or the text.
std::string remarkOf(const TraceEvent& event) {
  std::string remark;
  const auto add = [&](const std::string& part) { remark += (remark.empty() ? "" : ", ") + part; };
  if (event.why != Failure::None) add(std::string(kFailures[static_cast<std::size_t>(event.why)]));
  if (event.times != 1) add(std::to_string(event.times) + " times");
  if (event.last != event.at) add("until " + timeText(event.last));
  const bool mistakable = event.text.starts_with('[') && isBracketed(event.kind);
  return remark.empty() && !mistakable ? remark : " [" + remark + "]";
}

std::string lineOf(const TraceEvent& event) {
  std::string line = timeText(event.at);
  line.insert(0, kTimeWidth - std::min(kTimeWidth, line.size()), ' ');
  line += "  " + std::string(kWords[static_cast<std::size_t>(event.kind)]) + remarkOf(event);
  if (!event.text.empty()) line += " " + escaped(event.text);
  if (!event.bytes.empty()) line += " " + hexLine(event.bytes);
  return line + "\n";
}

// --- Reading. ---

std::optional<platform::Micros> timeOf(std::string_view text) {
  std::uint32_t seconds = 0, micros = 0;  // no sign is read, and none before a zero
  const char* const end = text.data() + text.size();
  const auto whole = std::from_chars(text.data(), end, seconds);
  if (whole.ec != std::errc() || seconds > 10'000'000 || end - whole.ptr != 7 || *whole.ptr != '.') return std::nullopt;
  const auto rest = std::from_chars(whole.ptr + 1, end, micros);
  if (rest.ec != std::errc() || rest.ptr != end) return std::nullopt;
  return platform::Micros(std::int64_t{seconds} * 1000000 + micros);
}

bool readRemark(std::string_view part, TraceEvent& event) {
  const auto known = std::find(kFailures.begin() + 1, kFailures.end(), part);
  if (known != kFailures.end()) {
    event.why = static_cast<Failure>(known - kFailures.begin());
    return true;
  }
  if (part.ends_with(" times")) {
    event.times = platform::wholeOf(part.substr(0, part.size() - 6));
    return event.times > 1 || event.kind == Kind::Thinned;
  }
  const auto until = part.starts_with("until ") ? timeOf(part.substr(6)) : std::nullopt;
  event.last = until.value_or(event.at);
  return until && *until >= event.at;
}

bool readBytes(std::string_view text, std::vector<std::uint8_t>& bytes) {
  for (std::size_t at = 0; at < text.size(); at += 3) {
    std::uint8_t byte = 0;
    const auto pair = text.substr(at, 2);
    const auto [end, error] = std::from_chars(pair.data(), pair.data() + pair.size(), byte, 16);
    if (error != std::errc() || pair.size() != 2 || end != pair.data() + 2) return false;
    if (at + 2 < text.size() && text[at + 2] != ' ') return false;
    bytes.push_back(byte);
  }
  return !bytes.empty();
}

// Takes the text up to the separator off the front.
std::string_view cut(std::string_view& text, std::string_view separator) {
  const std::size_t at = std::min(text.find(separator), text.size());
  const std::string_view head = text.substr(0, at);
  text.remove_prefix(std::min(at + separator.size(), text.size()));
  return head;
}

bool readBrackets(std::string_view& rest, TraceEvent& event) {
  if (!rest.starts_with('[')) return true;
  rest.remove_prefix(1);
  std::string_view remark = cut(rest, "]");
  if (rest.starts_with(' ')) rest.remove_prefix(1);
  while (!remark.empty())
    if (!readRemark(cut(remark, ", "), event)) return false;
  return true;
}

bool readEvent(std::string_view line, TraceEvent& event) {
  line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
  const auto at = timeOf(cut(line, "  "));
  const std::string_view word = cut(line, " ");
  const auto known = std::find(kWords.begin(), kWords.end(), word);
  if (!at || known == kWords.end()) return false;
  event = {.kind = static_cast<Kind>(known - kWords.begin()), .at = *at, .last = *at};
  if (isBracketed(event.kind) && !readBrackets(line, event)) return false;
  if (event.kind == Kind::Sent || event.kind == Kind::Received) return readBytes(line, event.bytes);
  event.text = plain(line);
  return true;
}

bool readField(std::string_view line, TraceFields& head) {
  const std::size_t colon = line.find(':');
  if (colon == std::string_view::npos || colon == 0) return false;
  head.push_back({std::string(line.substr(0, colon)), plain(line.substr(std::min(colon + 2, line.size())))});
  return true;
}

}  // namespace

std::string hexLine(std::span<const std::uint8_t> bytes) {
  std::string line;
  for (const std::uint8_t byte : bytes) line += (line.empty() ? "" : " ") + platform::hexText(byte, 2);
  return line;
}

std::string traceText(const Trace& trace) {
  std::string text = std::string(kTraceTitle) + "\n";
  for (const TraceField& field : trace.head) text += field.key + ": " + escaped(field.value) + "\n";
  text += "\nevents\n";
  for (const TraceEvent& event : trace.events) text += lineOf(event);
  return text + "end\n";
}

ReadTrace readTrace(std::string_view text) {
  ReadTrace read;
  enum { Title, Head, Events, End } place = Title;
  int number = 0;
  const auto fail = [&](const std::string& why) {
    read.error = "line " + std::to_string(number) + ": " + why;
    return read;
  };
  while (!text.empty() && place != End) {
    std::string_view line = cut(text, "\n");
    ++number;
    if (line.ends_with('\r')) line.remove_suffix(1);
    if (place == Title) {
      if (line != kTraceTitle) return fail("this is no trace of this version");
      place = Head;
    } else if (line.empty() || line.starts_with('#')) {
      continue;
    } else if (place == Head && line == "events") {
      place = Events;
    } else if (place == Head) {
      if (!readField(line, read.trace.head)) return fail("not understood");
    } else if (line == "end") {
      place = End;
    } else if (!readEvent(line, read.trace.events.emplace_back())) {
      return fail("not understood");
    }
  }
  if (place != End) return fail("the trace breaks off");
  return read;
}

}  // namespace kvr::engine
