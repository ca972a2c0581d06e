// The process's own standard output and error.
#pragma once

#include <functional>

#include "cli/streams.h"

namespace kvr::cli {

class ProcessStreams : public Streams {
 public:
  void out(std::string_view text) override;
  void err(std::string_view text) override;
  bool errIsTerminal() const override;
  int errWidth() const override;

  std::function<void()> onOutGone;  // once: nobody reads standard output any more

 private:
  bool outGone_ = false;
};

}  // namespace kvr::cli
