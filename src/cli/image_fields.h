// Image facts as fields of a report.
#pragma once

#include "cli/value.h"
#include "images/file_facts.h"

namespace kvr::cli {

List listOf(const std::vector<catalogue::AddressRange>& ranges);
Fields rangeFields(const catalogue::AddressRange& range);
Fields differenceFields(const images::Difference& difference);
Fields factFields(const images::FileFacts& facts, const catalogue::SelectedModel* model, images::ImageKind kind,
                  const std::vector<std::string>& warnings);

}  // namespace kvr::cli
