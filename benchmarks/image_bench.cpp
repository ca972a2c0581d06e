// How fast a HEX file gets into the image, and how long the hexadecimal view takes for a scroll step.
//   image_bench
#include <QApplication>
#include <QScrollBar>
#include <chrono>

#include "benchmarks/figure.h"
#include "platform/qt/qt_loop.h"
#include "shell/qt/hex_view.h"
#include "tests/images/images_bench.h"

namespace {

using namespace kvr;
using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start) {
  return std::chrono::duration<double>(Clock::now() - start).count();
}

std::string hexFileOf64K() {
  std::string text;
  for (int address = 0; address < 0x10000; address += 16) {
    platform::Bytes data(16);
    for (int i = 0; i < 16; ++i)
      data[static_cast<std::size_t>(i)] = static_cast<std::uint8_t>((address + i) * 7 + address / 256);
    text += images::hexRecord(address, data) + "\r\n";
  }
  return text + images::kEndRecord + "\r\n";
}

// The whole load: reading, scanning, sums, range checks, views.
double loadMbPerSecond(images::ImagesBench& bench) {
  const std::string text = hexFileOf64K();
  bench.files.put("/64k.hex", text);
  std::vector<double> rates;
  for (int round = 0; round < 9; ++round) {
    const auto start = Clock::now();
    int loads = 0;
    for (; secondsSince(start) < 0.2; ++loads) bench.room.loader.load("/64k.hex", images::ImageKind::Code);
    rates.push_back(static_cast<double>(loads) * static_cast<double>(text.size()) / secondsSince(start) / 1e6);
  }
  return bench::median(rates);
}

double scrollMsP99(images::ImagesBench& bench) {
  platform::QtLoop loop;
  window::HexView view(loop, bench.room.panel.txtBuffer2, bench.room.panel.vscFile[0], QStringLiteral("Code image"));
  view.resize(900, 700);
  view.show();
  QApplication::processEvents();
  std::vector<double> times;
  for (int line = 0; line < view.verticalScrollBar()->maximum(); line += 3) {
    const auto start = Clock::now();
    view.verticalScrollBar()->setValue(line);
    while (loop.dispatchReady()) continue;
    view.viewport()->repaint();
    times.push_back(secondsSince(start) * 1000);
    QApplication::processEvents();
  }
  return bench::percentile(times, 0.99);
}

}  // namespace

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  images::ImagesBench images("Alder-H100D");  // 64 KB of code
  const bool quick = bench::atLeast("hexload.mb_per_s", loadMbPerSecond(images), "MB/s", 100) &
                     bench::atMost("hexview.scroll_ms_p99", scrollMsP99(images), "ms", 16);
  return quick ? 0 : 1;
}
