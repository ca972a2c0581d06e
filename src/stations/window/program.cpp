#include "stations/window/program.h"

#include <QApplication>
#include <QFileInfo>

#include "records/qt/qt_record_desk.h"
#include "stations/window/stations_window.h"

namespace kvr::tiles {

Program::Program(const std::string& settingsPath, std::string command)
    : store(settingsPath.empty() ? platform::QtStore() : platform::QtStore(settingsPath)),
      crew(std::move(command), [this](const std::string& adapter) { return adapters.deviceOf(adapter); }),
      beeps([] { QApplication::beep(); }) {
  const stations::Line line = stations::readLine(store);
  for (const stations::Place& place : line.places)
    if (crew.add(place)) crew.station(crew.size() - 1).tile().port = adapters.textOf(place.adapter);
  crew.work = line.work;
  beeping = line.beeps;
}

Program::~Program() = default;

void Program::show(const std::string& project) {
  if (!project.empty()) setProject(project);
  window = std::make_unique<StationsWindow>(*this);
  window->show();
}

void Program::setProject(const std::string& path) {
  crew.work.project = QFileInfo(QString::fromStdString(path)).absoluteFilePath().toStdString();
}

std::string Program::save() {
  stations::Line line{.places = {}, .work = crew.work, .beeps = beeping};
  for (std::size_t i = 0; i < crew.size(); ++i) line.places.push_back(crew.place(i));
  stations::remember(store, line);
  return store.flush().error;
}

Books& Program::books() {
  if (!books_) {
    const records::QtRecordDesk desk([this] { return std::make_unique<platform::QtStore>(store.path()); });
    books_ = std::make_unique<Books>(desk.location());
  }
  return *books_;
}

}  // namespace kvr::tiles
