#include "cli/batch_text.h"

#include <array>

#include "engine/batch_log.h"
#include "platform/text.h"

namespace kvr::cli {
namespace {

using records::RunRow;

struct Column {
  const char* name;  // of the event's property, and of the column
  std::string RunRow::*text;
};
constexpr std::array kTexts = {Column{"began", &RunRow::began},
                               Column{"batch", &RunRow::batch},
                               Column{"station", &RunRow::station},
                               Column{"port", &RunRow::port},
                               Column{"adapter", &RunRow::adapter},
                               Column{"numbers", &RunRow::numbers},
                               Column{"chip", &RunRow::chip},
                               Column{"firmware", &RunRow::firmware},
                               Column{"factoryId", &RunRow::factoryId},
                               Column{"codeSum", &RunRow::codeSum},
                               Column{"dataSum", &RunRow::dataSum},
                               Column{"stages", &RunRow::stageSeconds},
                               Column{"program", &RunRow::programVersion},
                               Column{"operator", &RunRow::operatorName},
                               Column{"run", &RunRow::run}};

const char* wordOf(records::Verdict verdict) {
  return verdict == records::Verdict::Passed         ? "PASS"
         : verdict == records::Verdict::PassedInPart ? "PASS, PART LEFT OUT"
                                                     : "FAIL";
}

const char* endingOf(records::Verdict verdict) {
  return verdict == records::Verdict::Passed         ? "passed"
         : verdict == records::Verdict::PassedInPart ? "passed-in-part"
                                                     : "failed";
}

List countersOf(const records::Batch& batch) {
  List list;
  for (const records::Counter& counter : batch.counters)
    list.push_back(Fields{{"image", counter.name}, {"first", counter.first}, {"step", counter.step}});
  return list;
}

Fields jobOf(const records::Fingerprint& job) {
  Fields fields;
  for (const records::FingerprintPart& part : records::fingerprintParts())
    if (!(job.*part.value).empty()) fields.push_back({part.key, job.*part.value});
  return fields;
}

std::string ofWanted(const records::Batch& batch) {
  return batch.wanted ? " of " + std::to_string(*batch.wanted) : std::string();
}

}  // namespace

std::string stateText(const records::Batch& batch) {
  std::string text = std::to_string(batch.places.spent) + ofWanted(batch) + " done";
  if (batch.failed > 0) text += ", " + std::to_string(batch.failed) + " failed";
  if (batch.places.inDoubt > 0) text += ", " + std::to_string(batch.places.inDoubt) + " in doubt";
  return text;
}

Fields batchFields(const records::Batch& batch) {
  Fields fields = {{"name", batch.name},
                   {"opened", batch.opened},
                   {"closed", batch.closed},
                   {"passed", batch.passed},
                   {"passedInPart", batch.passedInPart},
                   {"failed", batch.failed},
                   {"given", batch.places.given},
                   {"spent", batch.places.spent},
                   {"reserved", batch.places.reserved},
                   {"inDoubt", batch.places.inDoubt},
                   {"free", batch.places.free},
                   {"counters", countersOf(batch)},
                   {"job", jobOf(batch.job)}};
  if (batch.wanted) fields.push_back({"wanted", *batch.wanted});
  return fields;
}

std::string batchLine(const records::Batch& batch) {
  return batch.name + "  " + stateText(batch) + "  " + (batch.closed.empty() ? "open since " : "closed ") +
         (batch.closed.empty() ? batch.opened : batch.closed) + "  " + batch.job.model;
}

std::string batchLines(const records::Batch& batch) {
  std::string text = batchLine(batch);
  const std::int64_t runs = batch.done() + batch.failed;
  if (runs > 0)
    text += "\nYield: " + platform::fixedText(100 * static_cast<double>(batch.done()) / static_cast<double>(runs), 1) +
            " % of " + std::to_string(runs) + " runs";
  const records::Places& places = batch.places;
  text += "\nPlaces given out: " + std::to_string(places.given) + " = " + std::to_string(places.spent) + " spent + " +
          std::to_string(places.reserved) + " in work + " + std::to_string(places.inDoubt) + " in doubt + " +
          std::to_string(places.free) + " free again";
  for (const records::Counter& counter : batch.counters)
    text += "\nSerial number in the " + counter.name + ": from " + std::to_string(counter.first) + " in steps of " +
            std::to_string(counter.step);
  for (const records::FingerprintPart& part : records::fingerprintParts())
    if (!(batch.job.*part.value).empty()) text += "\nJob, " + std::string(part.words) + ": " + batch.job.*part.value;
  return text;
}

Fields runFields(const RunRow& row) {
  Fields fields = {{"ending", std::string(endingOf(row.verdict))},
                   {"why", row.words},
                   {"seconds", row.seconds},
                   {"bytesLeftOut", row.bytesLeftOut}};
  for (const Column& column : kTexts) fields.push_back({column.name, row.*column.text});
  return fields;
}

std::string csvHeader() {
  std::string line = "verdict,failure,seconds,bytesLeftOut";
  for (const Column& column : kTexts) line += std::string(",") + column.name;
  return line;
}

std::string csvLine(const RunRow& row) {
  std::string line = engine::csvField(wordOf(row.verdict)) + "," + engine::csvField(row.words) + "," +
                     platform::fixedText(row.seconds, 3) + "," + std::to_string(row.bytesLeftOut);
  for (const Column& column : kTexts) line += "," + engine::csvField(row.*column.text);
  return line;
}

}  // namespace kvr::cli
