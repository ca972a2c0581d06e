// The handbook, a folder of web pages that the user's own browser shows.
#pragma once

#include <string>
#include <string_view>

namespace kvr::platform {

class Handbook {
 public:
  virtual ~Handbook() = default;
  // Shows a chapter, by its name without an ending; does not wait. False: no such page, or nothing that shows it.
  [[nodiscard]] virtual bool open(std::string_view chapter) = 0;
  virtual std::string firstPage() const = 0;  // its path, for the user
};

}  // namespace kvr::platform
