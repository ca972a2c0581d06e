#include <cstdio>

#include "cli/qt/process_streams.h"

namespace kvr::cli {
namespace {

// False: nobody takes the bytes.
bool put(std::FILE* file, std::string_view text) {
  return std::fwrite(text.data(), 1, text.size(), file) == text.size() && std::fflush(file) == 0;
}

}  // namespace

void ProcessStreams::out(std::string_view text) {
  if (outGone_ || put(stdout, text)) return;
  outGone_ = true;
  if (onOutGone) onOutGone();
}

void ProcessStreams::err(std::string_view text) {
  if (!put(stderr, text)) return;
}

bool ProcessStreams::errIsTerminal() const {
  return false;
}

int ProcessStreams::errWidth() const {
  return 80;
}

}  // namespace kvr::cli
