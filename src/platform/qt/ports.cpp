#include "platform/qt/ports.h"

#include <QFileInfo>
#include <QSerialPortInfo>

namespace kvr::platform {
namespace {

std::string comName(int number) {
  return "COM" + std::to_string(number);
}

std::string describe(const QSerialPortInfo& info) {
  QString text = info.description();
  if (!info.manufacturer().isEmpty() && !text.contains(info.manufacturer())) {
    if (!text.isEmpty()) text += QLatin1String(", ");
    text += info.manufacturer();
  }
  return text.toStdString();
}

std::string identify(const QSerialPortInfo& info) {
  if (!info.hasVendorIdentifier() || !info.hasProductIdentifier()) return info.systemLocation().toStdString();
  const QString identity = QStringLiteral("usb %1:%2 %3")
                               .arg(info.vendorIdentifier(), 4, 16, QLatin1Char('0'))
                               .arg(info.productIdentifier(), 4, 16, QLatin1Char('0'))
                               .arg(info.serialNumber());
  // Cheap adapters have no serial number: then the place tells two of a kind apart.
  if (info.serialNumber().isEmpty()) return (identity + info.systemLocation()).toStdString();
  return identity.toStdString();
}

std::map<int, std::string> entriesOf(const SettingsStore& store, const std::string& section) {
  std::map<int, std::string> entries;
  for (int number = 1; number <= kPortCount; ++number)
    if (const auto text = store.get(section, comName(number)); text && !text->empty()) entries[number] = *text;
  return entries;
}

}  // namespace

std::map<int, std::string> namedPorts(const SettingsStore& store) {
  return entriesOf(store, "Ports");
}

std::vector<FoundDevice> findSerialDevices() {
  std::vector<FoundDevice> found;
  for (const auto& info : QSerialPortInfo::availablePorts())
    found.push_back({info.systemLocation().toStdString(), identify(info), describe(info), info.hasVendorIdentifier()});
  return found;
}

bool Ports::rescan() {
  PortMap map = assignPorts(namedPorts(store_), findSerialDevices(), entriesOf(store_, "PortMemory"));
  for (auto& entry : map)
    entry.present = !entry.device.empty() && QFileInfo::exists(QString::fromStdString(entry.device));
  bool changed = !scanned_;
  for (std::size_t i = 0; i < map.size(); ++i)
    changed = changed || map[i].device != map_[i].device || map[i].present != map_[i].present ||
              map[i].description != map_[i].description;
  map_ = std::move(map);
  scanned_ = true;
  if (changed) remember();
  return changed;
}

void Ports::remember() {
  for (const auto& [number, identity] : identitiesOf(map_))
    if (store_.get("PortMemory", comName(number)) != identity) store_.set("PortMemory", comName(number), identity);
}

std::string Ports::deviceOf(int number) {
  if (number < 1 || number > kPortCount) return {};
  const auto index = static_cast<std::size_t>(number - 1);
  if (!scanned_ || !map_[index].present || !QFileInfo::exists(QString::fromStdString(map_[index].device))) rescan();
  return map_[index].device;
}

std::string Ports::describe(int number) const {
  if (number < 1 || number > kPortCount) return {};
  const PortEntry& entry = map_[static_cast<std::size_t>(number - 1)];
  if (entry.device.empty()) return {};
  const std::string text = entry.description.empty() ? entry.device : entry.device + "  " + entry.description;
  return entry.present ? text : text + "  (not there)";
}

}  // namespace kvr::platform
