#include "tests/driver/demo_run.h"

#include <QPushButton>
#include <cstdio>

namespace kvr::window {
namespace {

constexpr int kLimitMs = 120'000;  // the chip never came

}  // namespace

void DemoRun::start(const QString& picture) {
  picture_ = picture;
  program_.form.areas.screenIs(1080);
  program_.window->resize(1366, 740);  // the picture is for people, whatever the screen that is not there
  limit_.setSingleShot(true);
  QObject::connect(&limit_, &QTimer::timeout, program_.window.get(), [this] { end(); });
  limit_.start(kLimitMs);
  program_.loop.post([this] { press(); });  // after the file, which was queued first
}

void DemoRun::press() {
  using download::VerdictKind;
  token_ = program_.form.download.verdict.changed.watch([this] {
    const auto verdict = program_.form.download.verdict.value();
    // The run's last messages follow its verdict, so the pane is read when the run has returned.
    if (verdict > VerdictKind::Working) program_.loop.whenIdle([this] { end(); });
  });
  auto* button = program_.window->findChild<QPushButton*>(QStringLiteral("comDownload_0"));
  QMetaObject::invokeMethod(
      button, [button] { button->click(); }, Qt::QueuedConnection);
}

void DemoRun::end() {
  token_.reset();
  limit_.stop();
  std::printf("%s\n", program_.form.main.textMsg.text().c_str());
  std::fflush(stdout);
  if (!picture_.isEmpty()) program_.window->grab().save(picture_);
  ended_(program_.form.download.verdict.value() == download::VerdictKind::Pass);
}

}  // namespace kvr::window
