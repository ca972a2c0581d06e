#include "cli/qt/machine_ports.h"

#include <QDir>
#include <QFileInfo>
#include <QSerialPortInfo>

#include "platform/qt/ports.h"

namespace kvr::cli {
namespace {

const QString kById = QStringLiteral("/dev/serial/by-id");

std::map<std::string, std::string> namesById() {
  std::map<std::string, std::string> names;
  const QFileInfoList links = QDir(kById).entryInfoList(QDir::System | QDir::Files | QDir::NoDotAndDotDot);
  for (const QFileInfo& link : links) names[link.canonicalFilePath().toStdString()] = link.filePath().toStdString();
  return names;
}

PortInfo infoOf(const QSerialPortInfo& port) {
  return {.device = port.systemLocation().toStdString(),
          .description = port.description().toStdString(),
          .byId = {},
          .usb = port.hasVendorIdentifier() && port.hasProductIdentifier(),
          .vendor = port.vendorIdentifier(),
          .product = port.productIdentifier(),
          .serial = port.serialNumber().toStdString()};
}

}  // namespace

PortsSeen MachinePorts::look() {
  PortsSeen seen;
  const auto names = namesById();
  for (const QSerialPortInfo& port : QSerialPortInfo::availablePorts()) {
    PortInfo info = infoOf(port);
    if (const auto name = names.find(info.device); name != names.end()) info.byId = name->second;
    seen.found.push_back(std::move(info));
  }
  const platform::QtStore store;  // read, and never written
  seen.named = platform::namedPorts(store);
  return seen;
}

bool MachinePorts::exists(const std::string& device) const {
  return QFileInfo::exists(QString::fromStdString(device));
}

}  // namespace kvr::cli
