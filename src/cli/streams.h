// Standard output and standard error of the process.
#pragma once

#include <string_view>

namespace kvr::cli {

class Streams {
 public:
  virtual ~Streams() = default;
  // Goes out at once. Nothing happens on a stream whose reader is gone.
  virtual void out(std::string_view text) = 0;
  virtual void err(std::string_view text) = 0;
  virtual bool errIsTerminal() const = 0;
  virtual int errWidth() const = 0;  // columns of that terminal, now
};

}  // namespace kvr::cli
