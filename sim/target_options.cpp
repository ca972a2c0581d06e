#include "sim/target_options.h"

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <map>

namespace sim {

namespace {

bool toDouble(const std::string& text, double& value) {
  char* end = nullptr;
  value = std::strtod(text.c_str(), &end);
  return !text.empty() && *end == 0;
}

bool toInt(const std::string& text, int& value) {
  double number = 0;
  if (!toDouble(text, number) || number != static_cast<int>(number)) return false;
  value = static_cast<int>(number);
  return true;
}

// "6.3" is 0x63.
bool toVersion(const std::string& text, int& value) {
  if (text.size() != 3 || text[1] != '.') return false;
  value = std::atoi(text.substr(0, 1).c_str()) * 16 + std::atoi(text.substr(2).c_str());
  return value > 0;
}

// "9600,e,8,1".
bool toLine(const std::string& text, Line& line) {
  std::vector<std::string> parts(1);
  for (const char c : text) {
    if (c == ',')
      parts.emplace_back();
    else
      parts.back().push_back(c);
  }
  if (parts.size() != 4 || parts[1].size() != 1 || std::string("neo").find(parts[1]) == std::string::npos) return false;
  line.parity = parts[1][0];
  return toInt(parts[0], line.baud) && toInt(parts[2], line.dataBits) && toDouble(parts[3], line.stopBits);
}

using Setter = std::function<bool(const std::string&)>;

std::map<std::string, Setter, std::less<>> settersOf(TargetOptions& o) {
  const auto text = [](std::string& field) { return [&field](const std::string& v) { return field = v, true; }; };
  const auto real = [](double& field) { return [&field](const std::string& v) { return toDouble(v, field); }; };
  const auto oneOf = [](std::string& field, std::vector<std::string> known) {
    return [&field, known = std::move(known)](const std::string& v) {
      field = v;
      return std::find(known.begin(), known.end(), v) != known.end();
    };
  };
  return {{"--device", oneOf(o.device, {"chip", "board", "demo"})},
          {"--model", text(o.model)},
          {"--letter", [&o](const std::string& v) { return o.letter = v.empty() ? 0 : v[0], v.size() == 1; }},
          {"--firmware",
           [&o, oneOf](const std::string& v) {
             return toVersion(v, o.firmware) || oneOf(o.application, {"echo", "chatter", "monitor", "trigger"})(v);
           }},
          {"--clock", real(o.clockHz)},
          {"--seed", [&o](const std::string& v) { return o.seed = std::strtoull(v.c_str(), nullptr, 10), !v.empty(); }},
          {"--deaf-us", [&o](const std::string& v) { return toInt(v, o.deafMicros) && o.deafMicros >= 0; }},
          {"--program-us", [&o](const std::string& v) { return toInt(v, o.programMicros) && o.programMicros >= 0; }},
          {"--power-on", real(o.powerOnSeconds)},
          {"--power-cycle-after", real(o.powerCycleSeconds)},
          {"--chips", [&o](const std::string& v) { return toInt(v, o.chips) && o.chips > 0; }},
          {"--fault",
           [&o](const std::string& v) {
             const std::size_t at = v.find('=');
             o.faults.emplace_back(v.substr(0, at), at == std::string::npos ? "" : v.substr(at + 1));
             return true;
           }},
          {"--command", text(o.command)},
          {"--line", [&o](const std::string& v) { return toLine(v, o.applicationLine); }},
          {"--command-line", [&o](const std::string& v) { return toLine(v, o.commandLine); }},
          {"--replay", [&o](const std::string& v) { return o.device = "replay", o.replayPath = v, !v.empty(); }},
          {"--json", text(o.jsonPath)},
          {"--link", text(o.linkPath)}};
}

}  // namespace

ParsedOptions parseTargetOptions(const std::vector<std::string_view>& arguments) {
  ParsedOptions parsed;
  const auto setters = settersOf(parsed.options);
  const std::map<std::string_view, bool*> flags = {
      {"--paced", &parsed.options.paced}, {"--once", &parsed.options.once}, {"--help", &parsed.options.help}};
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (const auto flag = flags.find(arguments[i]); flag != flags.end()) {
      *flag->second = true;
      continue;
    }
    const auto setter = setters.find(arguments[i]);
    if (setter == setters.end() || i + 1 == arguments.size()) {
      parsed.error = "not understood: " + std::string(arguments[i]);
      return parsed;
    }
    const std::string value(arguments[++i]);
    if (!setter->second(value)) {
      parsed.error = "bad value for " + std::string(arguments[i - 1]) + ": " + value;
      return parsed;
    }
  }
  return parsed;
}

std::string targetUsage() {
  return "kvr-target: a simulated target behind a pseudo-terminal\n"
         "  --device chip|board|demo       what it is (chip)\n"
         "  --model NAME                   catalogue name (Ivy-H20S)\n"
         "  --letter X --firmware 6.3      stepping letter and boot firmware version (those usual for the model)\n"
         "  --clock HZ --seed N\n"
         "  --paced                        bytes take their true time on the wire, a wrong rate garbles\n"
         "  --deaf-us N                    it hears nothing for so long after each answer (500)\n"
         "  --program-us N                 its flash takes so long for a byte (55)\n"
         "  --power-on SECONDS             power comes this long after the start and after each power cycle\n"
         "  --power-cycle-after SECONDS    power goes this long after a chip was released or fell silent\n"
         "  --chips N                      N chips, a fresh one at each power cycle\n"
         "  --once                         end when the last chip has been released\n"
         "  --fault NAME[=VALUE]           may be given several times\n"
         "  --firmware echo|chatter|monitor|trigger   what a released chip runs\n"
         "  --command \"11 22 33\"           what makes a trigger firmware reset, or the demo routine start\n"
         "  --line 115200,n,8,1            the settings at which what it runs listens and talks\n"
         "  --command-line 9600,n,8,1      the settings of the command of a demo routine\n"
         "  --replay FILE                  plays the device's side of a trace that the tool has kept\n"
         "  --json FILE                    what it holds, written at each release and at the end\n"
         "  --link PATH                    a symbolic link to the terminal\n"
         "SIGTERM and SIGINT end it, SIGUSR1 cycles its power.\n";
}

}  // namespace sim
