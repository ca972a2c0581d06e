#include "batches/fingerprint.h"

#include <algorithm>

#include "images/file_scan.h"
#include "images/range_rules.h"
#include "platform/text.h"

namespace kvr::batches {
namespace {

// What lies where a number will be is no matter of the job: a window that counts has written there already.
std::string crcOf(const engine::JobImage& image, images::ImageKind kind, const Layout& layout) {
  auto bytes = image.bytes;
  for (const images::AutoIncrement& field : layout)
    for (auto at = field.field().first; field.kind == kind && at <= field.field().last; ++at)
      if (at >= 0 && at < std::ssize(bytes)) bytes[static_cast<std::size_t>(at)] = image.fill;
  return platform::hexText(images::crc32(bytes), 8);
}

bool carriesData(const engine::Job& job, const Layout& layout) {
  return job.data.loaded || std::any_of(layout.begin(), layout.end(), [](const images::AutoIncrement& field) {
           return field.kind == images::ImageKind::Data;
         });
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
                             .codeCrc32 = crcOf(job.code, images::ImageKind::Code, layout),
                             .options = optionsOf(job),
                             .numbers = layoutText(layout)};
  if (carriesData(job, layout)) {
    print.dataSum = images::sumDigits(job.data.sum);
    print.dataCrc32 = crcOf(job.data, images::ImageKind::Data, layout);
  }
  if (engine::measuresOscillator(job) && job.wantedFrequencyHz > 0)
    print.frequency = std::to_string(job.wantedFrequencyHz);
  return print;
}

}  // namespace kvr::batches
