#include "shell/qt/pages/pages.h"

namespace kvr::window {
namespace {

PageStack::Builder scrollingPage(const Maker& maker, QWidget* (*make)(const Maker&)) {
  return [maker, make] { return scrolling(make(maker)); };
}

}  // namespace

std::map<std::string, PageStack::Builder> lowerPages(const Maker& maker) {
  return {
      {"options", scrollingPage(maker, makeOptionsPage)},
      {"user_code", scrollingPage(maker, makeSelfDefinedPage)},
      {"TJXZ", scrollingPage(maker, makeOfflinePage)},
      {"CheckMCUoption", scrollingPage(maker, makeCheckOptionPage)},
      {"AUTO_INCREASE", scrollingPage(maker, makeIncrementPage)},
      {"ISP_DEMO", scrollingPage(maker, makeDemoPage)},
      {"store_buffer", scrollingPage(maker, makeStorePage)},
      {"Hardware_Help", scrollingPage(maker, makeHardwarePage)},
  };
}

std::map<std::string, PageStack::Builder> upperPages(const Maker& maker) {
  return {
      {"tab_file", [maker] { return makeCodeBufferPage(maker); }},  // the views scroll by themselves
      {"EEPROM_File", [maker] { return makeDataBufferPage(maker); }},
      {"Debug_COM", scrollingPage(maker, makeToolPage)},
      {"Batch_quantity", scrollingPage(maker, makeProjectPage)},
      {"Debug1", [maker] { return scrolling(makeMonitorPage(maker, 1)); }},
      {"Debug2", [maker] { return scrolling(makeMonitorPage(maker, 2)); }},
  };
}

}  // namespace kvr::window
