#include "shell/qt/application.h"

#include <QTimer>

namespace kvr::window {

Application::Application(const std::string& settingsPath)
    : store(settingsPath.empty() ? platform::QtStore() : platform::QtStore(settingsPath)),
      ports(store),
      link(loop, [this](int number) { return ports.deviceOf(number); }),
      dialogs(loop),
      form(platform::World{loop, link, dialogs, store, files, clock}, codec),
      portWatch(ports) {
  form.describePort = [this] { return ports.describe(link.portNumber()); };
  link.onStatus = [this](const platform::PortError& error) {
    form.main.portStatus.setCaption(error ? error.text : form.describePort());
  };
}

Application::~Application() {
  form.onUnload = {};
}

void Application::show(const std::string& file) {
  form.load();
  window = std::make_unique<MainWindow>(form, portWatch, dialogs, [this] {
    loop.whenIdle([this] {
      if (onGone) onGone();
    });
  });
  window->restorePlace();
  window->show();
  // The look at the ports costs as much as the window does; it waits until that has been painted.
  QTimer::singleShot(100, &portWatch, [this] { portWatch.look(); });
  if (!file.empty()) loop.post([this, file] { form.openDropped(file); });
}

}  // namespace kvr::window
