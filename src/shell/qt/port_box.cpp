#include "shell/qt/port_box.h"

#include <QAbstractItemView>
#include <QFileSystemWatcher>
#include <QPainter>
#include <QStyledItemDelegate>
#include <QTimer>

#include "shell/qt/bind_lists.h"

namespace kvr::window {
namespace {

constexpr int kDeviceRole = Qt::UserRole + 1;
constexpr int kPresentRole = Qt::UserRole + 2;

// "COM3   /dev/ttyUSB0  USB Serial": the number in the list's own colours, the device paler after it.
class PortDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
    QStyledItemDelegate::initStyleOption(option, index);
    const QString device = index.data(kDeviceRole).toString();
    if (!device.isEmpty()) option->text += QLatin1String("    ") + device;
    if (index.data(kPresentRole).toBool()) return;
    const QColor pale = option->palette.color(QPalette::Disabled, QPalette::Text);
    option->palette.setColor(QPalette::Text, pale);
  }
};

class PortCombo : public ComboWidget {
 public:
  explicit PortCombo(PortWatch& watch) : watch_(watch) {
    setItemDelegate(new PortDelegate(this));
    token_ = watch_.changed.watch([this] { describe(); });
  }
  void describe() {
    for (int i = 0; i < count(); ++i) {
      const QString device = qtText(watch_.ports().describe(i + 1));
      const auto& map = watch_.ports().map();
      const bool present = i < static_cast<int>(map.size()) && map[static_cast<std::size_t>(i)].present;
      if (itemData(i, kDeviceRole).toString() != device) setItemData(i, device, kDeviceRole);
      if (itemData(i, kPresentRole).toBool() != present) setItemData(i, present, kPresentRole);
      setItemData(
          i, device.isEmpty() ? itemText(i) + QStringLiteral(", no device") : itemText(i) + QLatin1Char(' ') + device,
          Qt::AccessibleTextRole);
    }
  }
  void showPopup() override {
    watch_.look();
    describe();
    const QFontMetrics metrics(view()->font());
    int width = this->width();
    for (int i = 0; i < count(); ++i)
      width = std::max(
          width,
          metrics.horizontalAdvance(itemText(i) + QLatin1String("    ") + itemData(i, kDeviceRole).toString()) + 40);
    view()->setMinimumWidth(std::min(width, 900));
    QComboBox::showPopup();
  }

 private:
  PortWatch& watch_;
  platform::Signal::Token token_;
};

}  // namespace

// Device files come and go in /dev, so the system tells of a plugging; nothing is polled.
PortWatch::PortWatch(platform::Ports& ports) : ports_(ports) {
  auto* files = new QFileSystemWatcher({QStringLiteral("/dev")}, this);
  auto* settle = new QTimer(this);  // an adapter's files and their rights appear one after another
  settle->setSingleShot(true);
  settle->setInterval(400);
  QObject::connect(files, &QFileSystemWatcher::directoryChanged, settle, [settle] {
    if (!settle->isActive()) settle->start();
  });
  QObject::connect(settle, &QTimer::timeout, this, [this] { look(); });
}

void PortWatch::look() {
  if (ports_.rescan()) changed.emit();
}

QComboBox* makePortBox(platform::EventLoop& loop, platform::ComboBox& control, PortWatch& watch, const QString& name) {
  auto* box = new PortCombo(watch);
  box->setMaxVisibleItems(platform::kPortCount);
  bindCombo(loop, control, *box, name);
  box->describe();
  return box;
}

}  // namespace kvr::window
