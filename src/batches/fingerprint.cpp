#include "batches/fingerprint.h"

#include "images/file_scan.h"
#include "images/range_rules.h"
#include "platform/text.h"

namespace kvr::batches {
namespace {

std::string crcOf(const engine::JobImage& image) {
  return platform::hexText(images::crc32(image.bytes), 8);
}

std::string optionsOf(const engine::Job& job) {
  std::string text;
  for (const std::uint8_t byte : engine::optionBytesOf(job)) text += platform::hexText(byte, 2);
  return text;
}

}  // namespace

records::Fingerprint fingerprintOf(const engine::Job& job, const Layout& layout) {
  records::Fingerprint print{.model = job.model.name(),
                             .codeSum = images::sumDigits(job.code.sum),
                             .codeCrc32 = crcOf(job.code),
                             .options = optionsOf(job),
                             .numbers = layoutText(layout)};
  if (job.data.loaded) {
    print.dataSum = images::sumDigits(job.data.sum);
    print.dataCrc32 = crcOf(job.data);
  }
  if (job.wantedFrequencyHz > 0) print.frequency = std::to_string(job.wantedFrequencyHz);
  return print;
}

}  // namespace kvr::batches
