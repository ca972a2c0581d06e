#include "records/batch.h"

namespace kvr::records {

const std::vector<FingerprintPart>& fingerprintParts() {
  static const std::vector<FingerprintPart> kParts{
      {"model", "model", &Fingerprint::model},
      {"numbers", "place of the serial number", &Fingerprint::numbers},  // the sums depend on it
      {"codeSum", "code checksum", &Fingerprint::codeSum},
      {"codeCrc32", "CRC-32 of the code", &Fingerprint::codeCrc32},
      {"dataSum", "EEPROM checksum", &Fingerprint::dataSum},
      {"dataCrc32", "CRC-32 of the EEPROM data", &Fingerprint::dataCrc32},
      {"options", "option bytes", &Fingerprint::options},
      {"frequency", "frequency", &Fingerprint::frequency},
  };
  return kParts;
}

std::string differenceOf(const Fingerprint& batch, const Fingerprint& job) {
  const auto orNone = [](const std::string& value) { return value.empty() ? std::string("none") : value; };
  for (const FingerprintPart& part : fingerprintParts())
    if (batch.*part.value != job.*part.value)
      return std::string(part.words) + " " + orNone(job.*part.value) + " instead of " + orNone(batch.*part.value);
  return {};
}

Room roomIn(const Batch& batch) {
  const Places& places = batch.places;
  if (!batch.wanted || places.given - places.free < *batch.wanted) return Room::Now;
  return places.spent + places.inDoubt < *batch.wanted ? Room::Later : Room::Never;
}

std::string takenText(const Batch& batch) {
  const Places& places = batch.places;
  std::string words = std::to_string(places.spent) + " of " + std::to_string(batch.wanted.value_or(0)) + " done";
  if (places.reserved > 0) words += ", " + std::to_string(places.reserved) + " in work";
  if (places.inDoubt > 0) words += ", " + std::to_string(places.inDoubt) + " in doubt";
  return words;
}

std::string fullText(const Batch& batch) {
  return "The batch \"" + batch.name + "\" is full: " + takenText(batch) + ".";
}

std::string closedOrOtherJob(const Batch& batch, const Fingerprint& job) {
  if (!batch.closed.empty()) return "The batch \"" + batch.name + "\" is closed.";
  const std::string difference = differenceOf(batch.job, job);
  if (difference.empty()) return {};
  return "This is not the job of the batch \"" + batch.name + "\": " + difference + ".";
}

std::string refusalOf(const Batch& batch, const Fingerprint& job) {
  const std::string why = closedOrOtherJob(batch, job);
  return why.empty() && roomIn(batch) != Room::Now ? fullText(batch) : why;
}

std::string textOf(const std::vector<std::int64_t>& numbers) {
  std::string text;
  for (const std::int64_t number : numbers) text += (text.empty() ? "" : "/") + std::to_string(number);
  return text;
}

}  // namespace kvr::records
