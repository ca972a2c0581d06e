#include "engine/batch_log.h"

#include <algorithm>
#include <vector>

#include "platform/text.h"

namespace kvr::engine {

std::string csvField(const std::string& field) {
  if (field.find_first_of(",\"\r\n") == std::string::npos) return field;
  std::string result = "\"";
  for (const char c : field) {
    if (c == '"') result += '"';
    result += c;
  }
  return result + '"';
}

namespace {

std::string joined(std::vector<std::string> fields, LogForm form) {
  if (form == LogForm::WithoutTurnRound) fields.pop_back();
  std::string line;
  for (const auto& field : fields) line += csvField(field) + ',';
  line.pop_back();
  return line + "\r\n";
}

// Older logs have the older header, and are read for no more than that.
LogForm formOf(const platform::FileSystem& files, const std::string& path) {
  const std::string older = csvHeader(LogForm::WithoutTurnRound);
  const auto begin = files.read(path, older.size());
  const bool same = begin && std::equal(begin->begin(), begin->end(), older.begin(), older.end());
  return same ? LogForm::WithoutTurnRound : LogForm::Whole;
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
          .seconds = static_cast<int>(seconds),
          .turnRoundMs = static_cast<int>(outcome.turnRound.count())};
}

std::string csvLine(const BatchEntry& e, LogForm form) {
  return joined({e.time, e.model, e.verdict, e.failure, e.codeSum, e.dataSum, e.firmware, e.serial, e.factoryId,
                 std::to_string(e.seconds), e.turnRoundMs > 0 ? std::to_string(e.turnRoundMs) : ""},
                form);
}

std::string csvHeader(LogForm form) {
  return joined({"time", "model", "verdict", "failure", "code sum", "data sum", "firmware", "serial", "factory id",
                 "seconds", "turn-round ms"},
                form);
}

platform::FileResult appendToBatchLog(platform::FileSystem& files, const std::string& path, const BatchEntry& entry) {
  const LogForm form = formOf(files, path);
  return files.appendLine(path, csvLine(entry, form), csvHeader(form));
}

}  // namespace kvr::engine
