#include "cli/image_fields.h"

#include "images/range_rules.h"
#include "platform/text.h"

namespace kvr::cli {
namespace {

Fields recordsOf(const std::array<int, 256>& ofType) {
  Fields records;
  for (std::size_t type = 0; type < ofType.size(); ++type)
    if (ofType[type] > 0) records.push_back({std::to_string(type), std::int64_t{ofType[type]}});
  return records;
}

Fields fitFields(const images::AreaFit& fit, const catalogue::SelectedModel& model) {
  return {{"model", model.name()},
          {"area", fit.area},
          {"filled", fit.filled},
          {"inDataMemory", fit.inData},
          {"beyond", fit.beyond}};
}

}  // namespace

Fields rangeFields(const catalogue::AddressRange& range) {
  return {{"first", std::int64_t{range.first}}, {"last", std::int64_t{range.last}}};
}

List listOf(const std::vector<catalogue::AddressRange>& ranges) {
  List list;
  for (const catalogue::AddressRange& range : ranges) list.push_back(rangeFields(range));
  return list;
}

Fields differenceFields(const images::Difference& difference) {
  constexpr const char* kKinds[] = {"bytes", "onlyFirst", "onlySecond"};
  Fields fields = rangeFields(difference.range);
  fields.push_back({"kind", std::string(kKinds[static_cast<std::size_t>(difference.kind)])});
  return fields;
}

Fields factFields(const images::FileFacts& facts, const catalogue::SelectedModel* model, images::ImageKind kind,
                  const std::vector<std::string>& warnings) {
  const images::ImageFacts& image = facts.image;
  const bool hex = facts.format == images::FileFormat::Hex;
  Fields fields = {{"file", facts.path},
                   {"format", std::string(hex ? "hex" : "binary")},
                   {"size", static_cast<std::int64_t>(facts.info.size)},
                   {"fileCrc32", platform::hexText(facts.info.crc, 8)},
                   {"imageCrc32", platform::hexText(image.crc, 8)},
                   {"checkSum", images::sumDigits(facts.sum)},
                   {"bytes", image.bytes},
                   {"first", std::int64_t{image.first()}},
                   {"last", std::int64_t{image.last()}},
                   {"ranges", listOf(image.ranges)},
                   {"gaps", listOf(image.gaps())},
                   {"overlaps", listOf(facts.overlaps)}};
  if (hex) fields.push_back({"records", recordsOf(facts.recordsOfType)});
  if (image.vector)
    fields.push_back({"vector", Fields{{"mnemonic", std::string(image.vector->mnemonic)},
                                       {"target", std::int64_t{image.vector->target}}}});
  if (model != nullptr) fields.push_back({"fit", fitFields(images::fitOf(image, *model, kind), *model)});
  fields.push_back({"warnings", listOf(warnings)});
  return fields;
}

}  // namespace kvr::cli
