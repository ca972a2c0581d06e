// The handbook's pages beside the installed program, or where the build has made them.
#pragma once

#include <QString>

#include "platform/handbook.h"

namespace kvr::window {

class QtHandbook : public platform::Handbook {
 public:
  bool open(std::string_view chapter) override;
  std::string firstPage() const override;
};

}  // namespace kvr::window
