// Puts the time of arrival in front of what is shown: of every line, or of every burst (what comes without a pause).
#pragma once

#include <string>
#include <string_view>

namespace kvr::comtool {

enum class StampMode { Off = 0, Line = 1, Burst = 2 };

class TimeStamps {
 public:
  // The text with its stamps. `stamp` is the time as text, `newBurst` says that the line was silent before this text. A
  // burst that begins in the middle of a line begins a new one. Empty lines get no stamp.
  std::string apply(StampMode mode, std::string_view text, const std::string& stamp, bool newBurst);
  // What ends the line that has begun: a line feed, or nothing.
  std::string endLine();
  void clear() { *this = {}; }  // the pane is empty now

 private:
  void addLines(std::string& result, std::string_view text, const std::string& mark);
  bool inLine_ = false;     // the last text shown did not end a line
  bool burstOpen_ = false;  // a burst has begun and nothing of it was shown yet
};

}  // namespace kvr::comtool
