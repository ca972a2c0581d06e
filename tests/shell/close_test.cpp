// The end of the program: a request to close while something is under way.
#include <gtest/gtest.h>

#include "tests/support/form_bench.h"

namespace kvr::shell {
namespace {

using namespace std::chrono_literals;

// Asks to close at `after`, presses Program now. True: the window has gone and nothing runs any more.
bool closesDuringARun(support::FormBench& bench, platform::Millis after) {
  bool gone = false;
  bench.form.onUnload = [&] { gone = true; };
  platform::Timer close(bench.loop, [&] { EXPECT_TRUE(bench.form.queryUnload()); });
  close.start(after);
  bench.loop.post([&] { bench.form.download.comDownload[0].press(); });
  bench.loop.runFor(20s);
  return gone && !bench.form.activity.busy();
}

TEST(Close, EndsARunThatWaitsForItsChip) {
  support::FormBench bench;
  bench.loadCode(platform::Bytes(600, 0x12));
  EXPECT_TRUE(closesDuringARun(bench, 3s));
}

TEST(Close, IsNotForgottenByARunThatStillWaitsForItsFile) {
  support::FormBench bench;
  bench.loadCode(platform::Bytes(600, 0x12));
  bench.form.images.panel.cekReloadFile.setValue(true);
  bench.files.put("/image.bin",
                  platform::Bytes(700, 0x34));  // rewritten: the start of the run waits until it is at rest
  EXPECT_TRUE(closesDuringARun(bench, 100ms));
}

TEST(Close, ASecondRequestGoesAtOnceWhenNothingRuns) {
  support::FormBench bench;
  EXPECT_TRUE(bench.form.queryUnload());
  EXPECT_FALSE(bench.form.queryUnload());
}

}  // namespace
}  // namespace kvr::shell
