#include "sim/trace_script.h"

#include <cmath>
#include <cstdlib>
#include <sstream>

#include "sim/fault_text.h"

namespace sim {

namespace {

// At most four months.
bool readTime(const std::string& text, Micros& time) {
  const double seconds = std::strtod(text.c_str(), nullptr);
  if (!(seconds >= 0 && seconds <= 1e7)) return false;
  time = std::llround(seconds * kSecond);
  return true;
}

// "9600,e,8,1"
Line lineOf(const std::string& settings) {
  Line line;
  line.baud = std::atoi(settings.c_str());
  if (const std::size_t comma = settings.find(','); comma + 3 < settings.size()) {
    line.parity = settings[comma + 1];
    line.dataBits = settings[comma + 3] - '0';
  }
  return line;
}

// What is in brackets in front of the bytes, taken off.
std::string takeRemark(std::string& rest) {
  const std::size_t end = rest.find(']');
  if (rest.empty() || rest[0] != '[' || end == std::string::npos) return {};
  const std::string remark = rest.substr(1, end - 1);
  rest.erase(0, end + 1);
  return remark;
}

bool readBytes(const std::string& text, Bytes& bytes) {
  std::istringstream words(text);
  for (std::string word; words >> word;) {
    int value = 0;
    if (word.size() != 2 || !toNumber(word, value, 16)) return false;
    bytes.push_back(static_cast<std::uint8_t>(value));
  }
  return !bytes.empty();
}

class Reader {
 public:
  TraceScript read(std::string_view text) {
    std::istringstream lines{std::string(text)};
    std::string line;
    if (!std::getline(lines, line) || withoutReturn(line) != "KVR-ISP trace 1")
      script_.error = "it is no trace of version 1";
    bool inEvents = false, ended = false;
    while (script_.error.empty() && !ended && std::getline(lines, line)) {
      line = withoutReturn(line);
      if (line.empty() || line[0] == '#') continue;
      if (line == "end")
        ended = true;
      else if (inEvents)
        take(line);
      else if (line == "events")
        inEvents = true;
      else if (line.starts_with("model: "))
        script_.model = line.substr(7);
    }
    if (script_.error.empty() && !ended) script_.error = "the trace breaks off";
    return std::move(script_);
  }

 private:
  static std::string withoutReturn(std::string line) {
    if (line.ends_with('\r')) line.pop_back();
    return line;
  }

  void take(const std::string& line) {
    std::istringstream stream(line);
    std::string time, word, rest;
    stream >> time >> word;
    std::getline(stream >> std::ws, rest);
    if (word == "line" && !rest.starts_with('[')) line_ = lineOf(rest);
    if (word == "thinned") script_.error = "the trace was thinned: not all that the device said is in it";
    if (word != ">" && word != "<") return;
    const std::string remark = takeRemark(rest);
    Bytes bytes;
    const std::size_t until = remark.find("until ");
    Micros at = 0, last = 0;
    if (!readBytes(rest, bytes) || !readTime(time, at) ||
        !readTime(until == std::string::npos ? time : remark.substr(until + 6), last))
      script_.error = "not understood: " + line;
    word == ">" ? hear(std::move(bytes), remark, last) : say(std::move(bytes), at);
  }

  void hear(Bytes bytes, const std::string& remark, Micros last) {
    if (script_.steps.empty() || !script_.steps.back().said.empty()) script_.steps.emplace_back();
    const int times = remark.find(" times") == std::string::npos ? 1 : std::atoi(remark.c_str());
    script_.steps.back().heard.push_back({std::move(bytes), times});
    heardAt_ = last;
  }

  void say(Bytes bytes, Micros at) {
    if (script_.steps.empty()) return;  // before the host said anything: nobody asked for it
    script_.steps.back().said.push_back({std::move(bytes), at - heardAt_, line_});
  }

  TraceScript script_;
  Line line_;
  Micros heardAt_ = 0;
};

}  // namespace

TraceScript readTraceScript(std::string_view text) {
  return Reader().read(text);
}

}  // namespace sim
