#include "shell/qt/application.h"

#include <QFileInfo>
#include <QTimer>

#include "shell/qt/clear_marks.h"
#include "shell/qt/stations_program.h"

namespace kvr::window {

Application::Application(const std::string& settingsPath)
    : store(settingsPath.empty() ? platform::QtStore() : platform::QtStore(settingsPath)),
      ports(store),
      link(loop, [this](int number) { return ports.deviceOf(number); }),
      dialogs(loop),
      records([this] { return std::make_unique<platform::QtStore>(store.path()); }),
      form(platform::World{loop, link, dialogs, store, files, clock}, codec, records),
      portWatch(ports) {
  useClearMarks();
  form.project.openStations = [](const std::string& project) {
    return startStations(QString::fromStdString(project)).toStdString();
  };
  form.portPlace = [this](int number) { return placeOf(number); };
  form.portLine.deviceOf = [this](int number) { return ports.describe(number); };
}

// "usb:1a86:7523:SERIAL", as the command names an adapter.
shell::BatchRoom::Place Application::placeOf(int number) {
  const std::string device = ports.deviceOf(number);  // looks again when it knows of none
  if (device.empty()) return {"COM" + std::to_string(number), {}};
  const platform::PortEntry& port = ports.map()[static_cast<std::size_t>(number - 1)];
  const QString name = QString::fromStdString(port.identity).simplified().replace(QLatin1Char(' '), QLatin1Char(':'));
  return {device, port.usb ? name.toStdString() : std::string()};
}

Application::~Application() {
  form.onUnload = {};
}

void Application::show(const std::string& file) {
  form.load();
  window = std::make_unique<MainWindow>(form, portWatch, dialogs, handbook, [this] {
    loop.whenIdle([this] {
      if (onGone) onGone();
    });
  });
  window->restorePlace();
  window->show();
  // The look at the ports costs as much as the window does; it waits until that has been painted.
  QTimer::singleShot(100, &portWatch, [this] {
    portWatch.look();
    form.portLine.follow();  // also when the look found what it had found the last time
  });
  if (file.empty()) return;
  // Whole, since the settings keep it, and the next start has another folder to begin with.
  const std::string path = QFileInfo(QString::fromStdString(file)).absoluteFilePath().toStdString();
  loop.post([this, path] { form.openDropped(path); });
}

}  // namespace kvr::window
