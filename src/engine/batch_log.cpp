#include "engine/batch_log.h"

#include <initializer_list>

#include "platform/text.h"

namespace kvr::engine {
namespace {

std::string quoted(const std::string& field) {
  if (field.find_first_of(",\"\r\n") == std::string::npos) return field;
  std::string result = "\"";
  for (const char c : field) {
    if (c == '"') result += '"';
    result += c;
  }
  return result + '"';
}

std::string joined(std::initializer_list<std::string> fields) {
  std::string line;
  for (const auto& field : fields) line += quoted(field) + ',';
  line.pop_back();
  return line + "\r\n";
}

const char* verdictWord(Ending ending) {
  switch (ending) {
    case Ending::Passed:
      return "PASS";
    case Ending::PassedInPart:
      return "PASS, PART LEFT OUT";
    default:
      return "FAIL";
  }
}

std::string sumText(std::int32_t sum) {
  return platform::hexText(static_cast<std::uint32_t>(sum), 7) + "H";
}

}  // namespace

BatchEntry batchEntry(const Outcome& outcome, const std::string& time, const std::string& model,
                      const std::string& serial) {
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(outcome.sinceAnswer()).count();
  return {.time = time,
          .model = model,
          .verdict = verdictWord(outcome.ending),
          .failure = outcome.words,
          .codeSum = sumText(outcome.codeSum),
          .dataSum = sumText(outcome.dataSum),
          .firmware = outcome.chip ? outcome.chip->firmware : std::string(),
          .serial = serial,
          .factoryId = outcome.chip ? outcome.chip->factoryId : std::string(),
          .seconds = static_cast<int>(seconds)};
}

std::string csvLine(const BatchEntry& e) {
  return joined({e.time, e.model, e.verdict, e.failure, e.codeSum, e.dataSum, e.firmware, e.serial, e.factoryId,
                 std::to_string(e.seconds)});
}

std::string csvHeader() {
  return joined(
      {"time", "model", "verdict", "failure", "code sum", "data sum", "firmware", "serial", "factory id", "seconds"});
}

platform::FileResult appendToBatchLog(platform::FileSystem& files, const std::string& path, const BatchEntry& entry) {
  return files.appendLine(path, csvLine(entry), csvHeader());
}

}  // namespace kvr::engine
