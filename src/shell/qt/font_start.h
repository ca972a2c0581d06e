// Reads the fonts' configuration beside the start of the program. Where fontconfig serves the fonts, it does that at
// the first use, which takes about as long as getting to the display does. So both are done at once.
#pragma once

#include <QLibrary>
#include <thread>

namespace kvr::window {

class FontStart {
 private:
  using Reader = int (*)();
  Reader read_ = reinterpret_cast<Reader>(QLibrary(QStringLiteral("fontconfig"), 1).resolve("FcInit"));
  std::jthread thread_{[read = read_] { return read ? read() : 0; }};
};

}  // namespace kvr::window
