#include "records/batch.h"

namespace kvr::records {

const std::vector<FingerprintPart>& fingerprintParts() {
  static const std::vector<FingerprintPart> kParts{
      {"model", "model", &Fingerprint::model},
      {"codeSum", "code checksum", &Fingerprint::codeSum},
      {"codeCrc32", "CRC-32 of the code", &Fingerprint::codeCrc32},
      {"dataSum", "EEPROM checksum", &Fingerprint::dataSum},
      {"dataCrc32", "CRC-32 of the EEPROM data", &Fingerprint::dataCrc32},
      {"options", "option bytes", &Fingerprint::options},
      {"frequency", "frequency", &Fingerprint::frequency},
      {"numbers", "place of the serial number", &Fingerprint::numbers},
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

std::string textOf(const std::vector<std::int64_t>& numbers) {
  std::string text;
  for (const std::int64_t number : numbers) text += (text.empty() ? "" : "/") + std::to_string(number);
  return text;
}

}  // namespace kvr::records
