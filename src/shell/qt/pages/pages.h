// The pages of the two tab strips, one builder for each key.
#pragma once

#include <map>

#include "shell/qt/maker.h"
#include "shell/qt/page_stack.h"

namespace kvr::window {

std::map<std::string, PageStack::Builder> upperPages(const Maker& maker);  // of TabStrip2
std::map<std::string, PageStack::Builder> lowerPages(const Maker& maker);  // of TabStrip1

// TabStrip1
QWidget* makeOptionsPage(const Maker& maker);
QWidget* makeSelfDefinedPage(const Maker& maker);
QWidget* makeOfflinePage(const Maker& maker);
QWidget* makeCheckOptionPage(const Maker& maker);
QWidget* makeIncrementPage(const Maker& maker);
QWidget* makeDemoPage(const Maker& maker);
QWidget* makeStorePage(const Maker& maker);
QWidget* makeHardwarePage(const Maker& maker);
// TabStrip2
QWidget* makeCodeBufferPage(const Maker& maker);
QWidget* makeDataBufferPage(const Maker& maker);
QWidget* makeToolPage(const Maker& maker);
QWidget* makeProjectPage(const Maker& maker);
QWidget* makeMonitorPage(const Maker& maker, int number);  // 1 registers, 2 external memory

}  // namespace kvr::window
