#include "stations/crew.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QStandardPaths>
#include <algorithm>

namespace kvr::stations {

constexpr int kBetweenStartsMs = 5;  // starting a process takes about ten: a click comes in between

Crew::Crew(std::string command, DeviceOf deviceOf) : command_(std::move(command)), deviceOf_(std::move(deviceOf)) {
  starting_.setSingleShot(true);
  QObject::connect(&starting_, &QTimer::timeout, [this] { startNext(); });
}

bool Crew::add(Place place) {
  if (posts_.size() >= kMost) return false;
  posts_.push_back(std::make_unique<Post>(std::move(place), command_, deviceOf_));
  Post& post = *posts_.back();
  post.station.tile().name = post.place.name;
  post.station.tile().port = post.place.adapter;
  connect();
  return true;
}

// Each tells by its place in the row, which changes when one is taken out.
void Crew::connect() {
  for (std::size_t i = 0; i < posts_.size(); ++i) {
    posts_[i]->station.changed = [this, i] {
      if (changed) changed(i);
    };
    posts_[i]->station.onVerdict = [this, i](signs::Sign sign) {
      if (onVerdict) onVerdict(i, sign);
    };
  }
}

bool Crew::remove(std::size_t index) {
  if (posts_[index]->station.busy()) return false;
  posts_.erase(posts_.begin() + static_cast<std::ptrdiff_t>(index));
  connect();
  return true;
}

bool Crew::setAdapter(std::size_t index, const std::string& adapter, const std::string& text) {
  Post& post = *posts_[index];
  if (post.station.tile().running || post.station.busy()) return false;
  post.place.adapter = adapter;
  post.station.tile().port = text;
  return true;
}

bool Crew::rename(std::size_t index, const std::string& name) {
  Post& post = *posts_[index];
  const bool taken = std::any_of(posts_.begin(), posts_.end(), [&](const auto& p) { return p->place.name == name; });
  if (name.empty() || taken || post.station.tile().running || post.station.busy()) return false;
  post.place.name = post.station.tile().name = name;
  return true;
}

std::string Crew::freshName() const {
  for (int number = 1;; ++number) {
    const std::string name = std::to_string(number);
    if (std::none_of(posts_.begin(), posts_.end(), [&](const auto& p) { return p->place.name == name; })) return name;
  }
}

std::optional<std::size_t> Crew::doubled() const {
  for (std::size_t i = 0; i < posts_.size(); ++i)
    for (std::size_t k = 0; k < i; ++k)
      if (!posts_[i]->place.adapter.empty() && posts_[i]->place.adapter == posts_[k]->place.adapter) return i;
  return std::nullopt;
}

void Crew::startAll() {
  toStart_ = 0;
  startNext();
}

void Crew::startNext() {
  if (toStart_ >= posts_.size()) return;
  posts_[toStart_++]->station.start(work);
  if (toStart_ < posts_.size()) starting_.start(kBetweenStartsMs);
}

void Crew::stopAll() {
  starting_.stop();
  for (auto& post : posts_) post->station.stop();
}

void Crew::finishAll() {
  starting_.stop();
  for (auto& post : posts_) post->station.finish();
}

void Crew::adaptersChanged() {
  for (auto& post : posts_) post->station.lookForAdapter();
}

bool Crew::busy() const {
  return starting_.isActive() ||
         std::any_of(posts_.begin(), posts_.end(), [](const auto& post) { return post->station.busy(); });
}

std::string findCommand() {
  const QString name = QStringLiteral("kvr");
  const QString beside = QCoreApplication::applicationDirPath() + QLatin1Char('/') + name;
  return (QFileInfo(beside).isExecutable() ? beside : QStandardPaths::findExecutable(name)).toStdString();
}

}  // namespace kvr::stations
