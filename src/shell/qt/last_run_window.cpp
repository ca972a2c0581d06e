#include "shell/qt/last_run_window.h"

#include <QBuffer>
#include <QDialogButtonBox>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

#include "shell/qt/binding.h"

namespace kvr::window {
namespace {

QByteArray asPng(const QImage& image) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  return image.save(&buffer, "PNG") ? bytes : QByteArray();
}

}  // namespace

LastRunWindow::LastRunWindow(shell::MainForm& form, QWidget* parent)
    : QDialog(parent), form_(form), view_(new RunPictureView) {
  setAttribute(Qt::WA_DeleteOnClose);
  setObjectName(QStringLiteral("lastRunWindow"));
  setWindowTitle(QStringLiteral("Last run"));
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(view_, 1);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
  auto* picture = buttons->addButton(QStringLiteral("&Save picture..."), QDialogButtonBox::ActionRole);
  picture->setObjectName(QStringLiteral("saveRunPicture"));
  layout->addWidget(buttons);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  // A file dialog waits in a turn of the loop, by when this window may be gone; in a run's turn it would hold the run
  // up.
  const auto followWork = [this, picture] { picture->setEnabled(!form_.activity.busy()); };
  workToken_ = form_.activity.changed.watch(followWork);
  followWork();
  connect(picture, &QPushButton::clicked, this, [this] {
    form_.world.loop.post([self = QPointer<LastRunWindow>(this)] {
      if (self && !self->form_.activity.busy()) self->save();
    });
  });
  token_ = form_.download.verdict.changed.watch([this] { follow(); });
  follow();
  resize(sizeHint().boundedTo(screen()->availableSize() * 9 / 10));
}

void LastRunWindow::follow() {
  std::vector<download::RunPicture> runs;
  for (const auto* run : {form_.results.history().last(), form_.results.history().toCompare()})
    if (run) runs.push_back(download::pictureOf(*run));
  view_->show(std::move(runs));
}

void LastRunWindow::save() {
  const QByteArray png = asPng(view_->image()), svg = view_->svg();
  const std::string path = form_.dialogs.saveFile({.title = "Save picture of the run",
                                                   .filter = "Pictures (*.png)|*.png|Drawings to scale (*.svg)|*.svg",
                                                   .initialFolder = {},
                                                   .fileName = "run.png"});
  if (path.empty()) return;
  const QByteArray& picture = qtText(path).endsWith(QLatin1String(".svg"), Qt::CaseInsensitive) ? svg : png;
  const auto written = form_.world.files.replace(path, platform::Bytes(picture.begin(), picture.end()));
  if (written) return;
  form_.dialogs.message(platform::kTitle, path + "\nThe picture could not be written.", platform::BoxIcon::Warning);
}

void showLastRun(shell::MainForm& form, QWidget& parent) {
  auto* window = parent.findChild<LastRunWindow*>(QStringLiteral("lastRunWindow"));
  if (!window) window = new LastRunWindow(form, &parent);
  window->show();
  window->raise();
  window->activateWindow();
}

}  // namespace kvr::window
