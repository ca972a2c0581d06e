#include "stations/adapters.h"

#include <QFileInfo>
#include <algorithm>

namespace kvr::stations {
namespace {

constexpr int kSettleMs = 400;

// A port that the settings name has no other identity than its device.
std::string identityOf(const platform::PortEntry& entry) {
  return entry.identity.empty() ? entry.device : entry.identity;
}

}  // namespace

Adapters::Adapters(platform::SettingsStore& store) : ports_(store) {
  ports_.rescan();
  settle_.setSingleShot(true);
  settle_.setInterval(kSettleMs);
  watch();
  QObject::connect(&files_, &QFileSystemWatcher::directoryChanged, this, [this] {
    if (!settle_.isActive()) settle_.start();
  });
  QObject::connect(&settle_, &QTimer::timeout, this, [this] { look(); });
}

// The folders that devices come into and go from: /dev, and those of ports that the settings name.
void Adapters::watch() {
  QStringList folders = {QStringLiteral("/dev")};
  for (const platform::PortEntry& entry : ports_.map())
    if (!entry.device.empty()) folders << QFileInfo(QString::fromStdString(entry.device)).absolutePath();
  for (const QString& folder : folders)
    if (!files_.directories().contains(folder) && QFileInfo::exists(folder)) files_.addPath(folder);
}

void Adapters::look() {
  if (ports_.rescan()) watch();  // one that was out and in again looks the same, and its station waits all the same
  if (changed) changed();
}

std::vector<Adapter> Adapters::list() {
  std::vector<Adapter> found;
  int number = 0;
  for (const platform::PortEntry& entry : ports_.map()) {
    ++number;
    if (entry.device.empty()) continue;
    found.push_back({identityOf(entry), entry.device, "COM" + std::to_string(number) + "  " + ports_.describe(number)});
  }
  return found;
}

std::string Adapters::deviceOf(const std::string& identity) {
  if (identity.empty()) return {};
  for (const Adapter& adapter : list())
    if (adapter.identity == identity && QFileInfo::exists(QString::fromStdString(adapter.device)))
      return adapter.device;
  return {};
}

std::string Adapters::textOf(const std::string& identity) {
  for (const Adapter& adapter : list())
    if (adapter.identity == identity) return adapter.text;
  return identity;
}

}  // namespace kvr::stations
