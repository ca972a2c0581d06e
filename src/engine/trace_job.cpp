#include "engine/trace_job.h"

#include <charconv>
#include <sstream>

#include "platform/text.h"

namespace kvr::engine {
namespace {

constexpr std::string_view kOption = "option ";
constexpr std::size_t kLargestImage = 1 << 20;

std::string imageText(const JobImage& image) {
  std::ostringstream text;
  text << "first=" << image.rangeStart << " last=" << image.rangeEnd << " held=" << image.heldEnd
       << " blanked=" << image.blanked << " fill=" << int{image.fill} << " sum=" << image.sum
       << " size=" << image.bytes.size() << " loaded=" << image.loaded;
  return text.str();
}

// The number after "name=" in a line of such pairs.
template <class Number>
void readNumber(const std::string& line, std::string_view name, Number& number) {
  const std::size_t at = (" " + line).find(" " + std::string(name) + "=");
  if (at == std::string::npos) return;
  const char* const first = line.data() + at + name.size() + 1;
  std::from_chars(first, line.data() + line.size(), number);
}

JobImage imageOf(const std::string& line) {
  JobImage image;
  std::size_t size = 0;
  int loaded = 0;
  readNumber(line, "first", image.rangeStart);
  readNumber(line, "last", image.rangeEnd);
  readNumber(line, "held", image.heldEnd);
  readNumber(line, "blanked", image.blanked);
  readNumber(line, "fill", image.fill);
  readNumber(line, "sum", image.sum);
  readNumber(line, "size", size);
  readNumber(line, "loaded", loaded);
  image.loaded = loaded != 0;
  image.bytes.assign(std::min(size, kLargestImage), image.fill);
  return image;
}

std::string numbersText(const std::vector<catalogue::AddressRange>& fields) {
  std::string text;
  for (const auto& field : fields)
    text += (text.empty() ? "" : " ") + std::to_string(field.first) + "-" + std::to_string(field.last);
  return text;
}

std::vector<catalogue::AddressRange> numbersOf(const std::string& text) {
  std::vector<catalogue::AddressRange> fields;
  std::istringstream stream(text);
  for (std::string pair; stream >> pair;) {
    const std::size_t dash = pair.find('-');
    if (dash == std::string::npos) continue;
    fields.push_back({platform::wholeOf(pair.substr(0, dash)), platform::wholeOf(pair.substr(dash + 1))});
  }
  return fields;
}

std::string yesNo(bool yes) {
  return yes ? "yes" : "no";
}

void addOptions(TraceFields& fields, const options::PanelValues& values) {
  fields.push_back({"prescaler", values.prescaler});
  fields.push_back({"wake-up delay", values.wakeUpDelay});
  fields.push_back({"low voltage", std::to_string(values.lowVoltageIndex)});
  fields.push_back({"trim by hand", "band=" + std::to_string(values.trimBand) + " step=" +
                                        std::to_string(values.trimStep) + " fine=" + std::to_string(values.trimFine)});
  fields.push_back({"options fixed", yesNo(values.noOptions)});
  for (const auto& [key, value] : values.choices) fields.push_back({std::string(kOption) + key, value});
}

options::PanelValues optionsOf(const Trace& trace, catalogue::Family family) {
  options::PanelValues values{.family = family, .noOptions = trace.field("options fixed") == "yes"};
  values.prescaler = trace.field("prescaler");
  values.wakeUpDelay = trace.field("wake-up delay");
  values.lowVoltageIndex = platform::wholeOf(trace.field("low voltage"));
  const std::string& trim = trace.field("trim by hand");
  readNumber(trim, "band", values.trimBand);
  readNumber(trim, "step", values.trimStep);
  readNumber(trim, "fine", values.trimFine);
  for (const TraceField& field : trace.head)
    if (field.key.starts_with(kOption)) values.choices[field.key.substr(kOption.size())] = field.value;
  return values;
}

}  // namespace

TraceFields jobFields(const Job& job) {
  TraceFields fields = {{"model", job.model.name()},
                        {"port", std::to_string(job.port)},
                        {"first rate", std::to_string(job.firstBaud)},
                        {"highest rate", std::to_string(job.highestBaud)},
                        {"fixed link", yesNo(job.fixedLink)},
                        {"frame size", std::to_string(job.frameSize)},
                        {"frequency", std::to_string(job.wantedFrequencyHz)},
                        {"base frequency", std::to_string(job.baseFrequencyHz)},
                        {"double speed", yesNo(job.doubleSpeed)},
                        {"watchdog pin", job.watchdogPin ? std::to_string(*job.watchdogPin) : "none"},
                        {"power switch", textOf(job.power)},
                        {"image", yesNo(job.imageValid)},
                        {"code", imageText(job.code)},
                        {"data", imageText(job.data)},
                        {"code numbers", numbersText(job.codeNumbers)},
                        {"data numbers", numbersText(job.dataNumbers)},
                        {"hand over", yesNo(job.handOver)}};
  addOptions(fields, job.choices);
  return fields;
}

std::optional<Job> jobOf(const Trace& trace) {
  const auto* row = catalogue::findByName(trace.field("model"));
  if (!row || trace.field("code").empty()) return std::nullopt;
  const auto number = [&](const char* key) { return platform::wholeOf(trace.field(key)); };
  const auto yes = [&](const char* key) { return trace.field(key) == "yes"; };
  Job job{.model = catalogue::describeModel(*row), .imageValid = yes("image")};
  job.code = imageOf(trace.field("code"));
  job.data = imageOf(trace.field("data"));
  job.codeNumbers = numbersOf(trace.field("code numbers"));
  job.dataNumbers = numbersOf(trace.field("data numbers"));
  job.choices = optionsOf(trace, row->family);
  job.doubleSpeed = yes("double speed");
  job.wantedFrequencyHz = number("frequency");
  job.baseFrequencyHz = number("base frequency");
  if (trace.field("watchdog pin") != "none") job.watchdogPin = static_cast<std::uint8_t>(number("watchdog pin"));
  job.port = number("port");
  job.firstBaud = number("first rate");
  job.highestBaud = number("highest rate");
  job.fixedLink = yes("fixed link");
  job.frameSize = number("frame size");
  job.handOver = yes("hand over");
  if (const auto power = powerSwitchOf(trace.field("power switch"))) job.power = *power;
  return job;
}

}  // namespace kvr::engine
