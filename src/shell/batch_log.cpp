#include "shell/batch_log.h"

#include <initializer_list>

namespace kvr::shell {
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

}  // namespace

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

}  // namespace kvr::shell
