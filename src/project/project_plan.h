// What opening a project will do, and what saving one will write, worked out before anything is touched.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "catalogue/mcu_record.h"
#include "options/option_table.h"
#include "project/project_text.h"

namespace kvr::project {

struct OpenPlan {
  std::string refusal;  // why the file opens nothing, for a person; empty: it opens
  bool old = false;     // of the older format
  const catalogue::McuRecord* model = nullptr;
  Header lines;  // what goes on controls, in order
};
OpenPlan planOpening(const ProjectText& text);

// The header of a project of a model of the family. `common` gives the value of a row of every family, `option` that of
// a key of the family's own panel.
Header headerFor(const catalogue::FamilyTraits& traits,
                 const std::function<std::string(const options::OptionRow&)>& common,
                 const std::function<std::string(std::string_view)>& option);

}  // namespace kvr::project
