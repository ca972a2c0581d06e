// A project as a value: everything that its file keeps, read from the file's text and written to it. It knows no
// control; the room beside it moves the values to the window's controls and back.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/family.h"
#include "catalogue/mcu_record.h"
#include "platform/text_codec.h"
#include "project/project_text.h"

namespace kvr::project {

inline constexpr std::string_view kModelKey = "MCU_Type";

struct ProjectFile {
  std::string model;  // its name in the catalogue
  Header general;     // names and sums of the files as the window shows them, both serial number counters
  Header options;     // the choices of the family's options, under their keys
  platform::Bytes code;
  std::optional<platform::Bytes> data;
  bool operator==(const ProjectFile&) const = default;
};

// Which options a project of the family keeps, in the order of the file.
std::vector<std::string_view> optionKeysOf(const catalogue::FamilyTraits& traits);

// The options of a freshly selected model, as the window would save them.
Header freshOptions(const catalogue::McuRecord& model);

platform::Bytes textOf(const ProjectFile& project);

// What became of a file that was read.
struct ReadProject {
  std::string refusal;  // why the file opens nothing, for a user; empty: it opens
  bool old = false;     // of the older format
  const catalogue::McuRecord* model = nullptr;
  ProjectFile project;  // values as UTF-8; images as far as they could be read
  bool codeSound = false;
  bool dataSound = false;    // false, too, without a data image
  bool dataMissing = false;  // the header names a data image, and the file holds none
};
ReadProject readProject(std::span<const std::uint8_t> file, const platform::TextCodec& codec);

// The sums of the images: those that the window showed when the project was saved, else those of the bytes.
std::int32_t codeSumOf(const ProjectFile& project);
std::int32_t dataSumOf(const ProjectFile& project);

}  // namespace kvr::project
